// The parameter file and its list files as records.
#include "config/driverpdf.h"

#include "config/pvcfile.h"
#include "fixture.h"
#include "tests/support/failingfiles.h"
#include "tests/support/logcapture.h"
#include "tests/support/temproot.h"

#include <sys/stat.h>

using testing::ElementsAre;

namespace {

constexpr const char* file = "/etc/atm/tvconf";

struct DriverPdf : testing::Test {
    TempRoot root;
    AtmDevices devices;
    DriverPdfEdit editor{nullptr, false, devices};
    LogCapture log;

    void load(const std::string& content) {
        root.write(file, content);
        for (int a = 0; a < adapterCount; ++a) {
            root.write("/etc/atm/routed" + std::to_string(a), routedText);
            root.write("/etc/atm/bridged" + std::to_string(a), bridgedText);
            root.write("/etc/atm/clients" + std::to_string(a), clientText);
        }
        testing::internal::CaptureStdout();
        EXPECT_TRUE(editor.ReadPdf());
        EXPECT_THAT(testing::internal::GetCapturedStdout(), testing::Not(testing::HasSubstr("rror")));
    }

    // Brings the texts to the disk, as a save does.
    bool save(bool stored) {
        for (const auto& [name, text] : editor.files().edits()) {
            if (text)
                root.write(name, *text);
            else
                std::filesystem::remove(root.at(name));
        }
        editor.forget();
        return stored;
    }

    // A line of the file by its beginning, from a place on.
    std::string line(std::string_view start, std::string_view from = "") const {
        const std::string text = root.read(file);
        const std::size_t at = text.find(start, text.find(from));
        return at == std::string::npos ? "" : text.substr(at, text.find('\n', at) - at);
    }
};

std::string allAdapters() {
    return adapterText(0) + adapterText(1) + adapterText(2) + adapterText(3);
}

std::string replaced(std::string text, std::string_view from, std::string_view to,
                     std::string_view behind = "") {
    return text.replace(text.find(from, text.find(behind)), from.size(), to);
}

}  // namespace

TEST_F(DriverPdf, OddValuesAreReadAsFarAsTheyGo) {
    load("[Adapter0\nInterruptNumber = 3\n]\n" + adapterText(1));
    EXPECT_THAT(devices.interruptNumber, ElementsAre(3, -1, -1, -1));
    EXPECT_EQ(devices.lec[1][0].pvcs.at(0).vci, 65535);
    EXPECT_EQ(devices.lec[1][1].elanName.view(), "caf");
}

TEST_F(DriverPdf, SavingChangesOnlyWhatChanged) {
    const std::string whole = allAdapters();
    load(whole);
    for (int a = 0; a < adapterCount; ++a) {
        EXPECT_TRUE(save(editor.WriteLink(a)));
        EXPECT_EQ(devices.lec[static_cast<std::size_t>(a)][1].pvcFile.str(),
                  "/etc/atm/pvcconf" + std::to_string(a) + ".1");
    }
    // Missing sections were made; of what was there only the empty values got one.
    std::string saved = root.read(file);
    EXPECT_THAT(log.text, testing::HasSubstr("Writing Values on - /Adapter3/LES7\n"));
    EXPECT_EQ(line("\t\tPvcConfFile", "\t[LEC3"), "\t\tPvcConfFile\t\t= /etc/atm/pvcconf0.3");
    EXPECT_EQ(line("\tPvcConfFile", "LEC = 1"), "\tPvcConfFile = /etc/atm/pvcconf0.1");
    EXPECT_EQ(line("\tConfig =", "[IP15770"), "\tConfig = 0");
    EXPECT_EQ(line("\tElanName", "LEC = 1"), "\tElanName = caf~e              # cannot be read whole");
    EXPECT_EQ(line("\tAtmPrefix", "LECS0"), "\tAtmPrefix = 4700");
    EXPECT_EQ(line("L3Mtu =", "[LEC0"), "");  // a missing key stays missing
    for (int a = 0; a < adapterCount; ++a) EXPECT_TRUE(save(editor.WriteLink(a)));
    EXPECT_EQ(root.read(file), saved);

    AtmDevices again;
    DriverPdfEdit reader(nullptr, false, again);
    devices.lec[1][0].mtuClass = 3;
    devices.lec[1][0].elanName = std::string(31, 'n');
    devices.sig[2].address.setNetworkPrefix("39");
    EXPECT_TRUE(save(editor.WriteLink(1) && editor.WriteLink(2)));
    saved = replaced(saved, "Mfs = 2", "Mfs = 3", "not a section ]\n[Adapter = 1");
    saved = replaced(saved, "ElanName =\n", "ElanName = " + std::string(31, 'n') + "\n", "Adapter = 1");
    saved = replaced(saved, "47000580FFe1", "39000580FFe1", "Adapter = 2");
    EXPECT_EQ(root.read(file), saved);
    EXPECT_EQ(root.read("/etc/atm/bridged1"), bridgedText);
    EXPECT_TRUE(reader.ReadPdf());
    EXPECT_EQ(again.lec[1][0].elanName.view(), std::string(30, 'n'));
}

TEST_F(DriverPdf, WhatIsNotStoredIsSaid) {
    load(adapterText(0));
    devices.lec[0][0].elanName = "two words";
    devices.lec[0][0].useLecs = 0;  // its key is missing
    EXPECT_FALSE(editor.WriteLink(0));
    EXPECT_THAT(editor.failures(),
                ElementsAre(SaveFailure{file, "the value of ElanName in /Adapter0/LEC0 cannot be stored"}));
    EXPECT_TRUE(editor.lacking().contains({"/Adapter0/LEC0", "Lecs"}));
    EXPECT_EQ(root.read(file), adapterText(0)) << "only the text in memory is another one";
}

TEST_F(DriverPdf, WhatCannotBeReadIsNotWritten) {
    root.write(file, adapterText(0));
    root.write("/etc/atm/routed0", routedText);
    {
        FailingFiles files;
        files.failAt(1, EIO, FileCall::read);
        EXPECT_FALSE(editor.ReadPdf());
    }
    EXPECT_FALSE(editor.WriteLink(0));
    EXPECT_THAT(editor.failures(), ElementsAre(SaveFailure{file, std::strerror(EIO), false, true}));
    EXPECT_TRUE(editor.files().edits().empty());
    EXPECT_TRUE(editor.ReadPdf());
}

// Names of files that are no lists, or not this record's alone (what else there is, the windows' tests
// show); what the user wanted to store is never there.
TEST_F(DriverPdf, FilesThatAreNoListsAreLeftAlone) {
    const AtmBridgedPvc pvc;
    const struct {
        std::string name, content;  // "(none)"
        std::string reason;
    } cases[] = {
        {"/etc/atm/routed0", routedText, "it is not a list of this kind"},
        {"/etc/atm/shared", bridgedText, "the parameter file names it more than once"},
        {"/etc/atm/same", "(link)/etc/atm/shared", "the parameter file names it more than once"},
        {"/etc/shadow", "root:*:19000:0:99999:7:::\n", "it is not a list of this kind"},
        {"/etc/atm/clients0", clientText, "it is not a list of this kind"},
        {file, "(none)", "it is not a list of this kind"},
        {"/etc/atm/directory", "(directory)", "it is not a regular file"},
        {"/etc/atm/pipe", "(pipe)", "it is not a regular file"},
        {"/etc/atm/../other", "(none)", "it is not a list, and not in /etc/atm"},
        {"/etc/empty", "", "it is not a list, and not in /etc/atm"},
        {"/etc/comments", "# nothing\n", "it is not a list, and not in /etc/atm"},
        {"/etc/atm/away", "(link)/etc/comments", "it is not a list, and not in /etc/atm"},
        {"/etc/list", bridgedText, ""},
        {"/etc/atm/new", "(none)", ""},
        {"/etc/atm/comments", "# nothing\n", ""},
    };
    for (const auto& c : cases) {
        std::filesystem::remove_all(root.at(c.name));
        root.write("/etc/atm/shared", bridgedText);
        load(replaced(adapterText(0), "/etc/atm/bridged0", c.name) +
             "[Adapter1\n[LEC3\nPvcConfFile = /etc/atm/shared\n]\n]\n");
        if (c.content.starts_with("(link)"))
            std::filesystem::create_symlink(root.at(c.content.substr(6)), root.at(c.name));
        else if (c.content == "(directory)")
            std::filesystem::create_directory(root.at(c.name));
        else if (c.content == "(pipe)")
            ASSERT_EQ(::mkfifo(root.at(c.name).c_str(), 0600), 0);
        else if (c.content != "(none)")
            root.write(c.name, c.content);
        EXPECT_TRUE(editor.ReadPdf());
        auto& list = devices.lec[0][0].pvcs;
        const bool wasEmpty = list.empty();
        EXPECT_TRUE(editor.WriteLists(0)) << "nothing was changed: " << c.name;
        list.push_back(pvc);
        EXPECT_EQ(editor.WriteLists(0), c.reason.empty()) << c.name;
        if (!c.reason.empty()) {
            EXPECT_THAT(editor.failures(), ElementsAre(SaveFailure{c.name, c.reason}));
        }
        EXPECT_EQ(editor.files().edits().size(), c.reason.empty() ? 1U : 0U) << c.name;
        if (wasEmpty) continue;
        EXPECT_TRUE(editor.ReadPdf());
        list.clear();
        EXPECT_EQ(editor.WriteLists(0), c.reason.empty()) << c.name;
        EXPECT_EQ(editor.files().edits().size(), c.reason.empty() ? 1U : 0U) << c.name;
    }
    EXPECT_THAT(editor.dropped(), ElementsAre("/etc/atm/comments had a comment, which is not kept."));
    load(adapterText(0));
    devices.ip1577[0].pvcs.clear();
    EXPECT_TRUE(editor.WriteLists(0));
    EXPECT_THAT(editor.dropped(), ElementsAre("/etc/atm/routed0 had a comment, which is not kept."));
}

TEST_F(DriverPdf, ListsAfterCancel) {
    load(adapterText(0) + "[Adapter1\n[LEC0\nEnabled = 1\n]\n[LEC1\nPvcConfFile = /" + std::string(70, 'f') +
         "\n]\n]\n");
    const AtmBridgedPvc pvc = devices.lec[0][0].pvcs[0];
    devices.lec[0][1].pvcs = {pvc};       // the name is empty in the file
    devices.lec[0][2].pvcs = {pvc, pvc};  // the section is missing
    devices.lec[0][0].pvcs.clear();
    devices.les[0][1].clients.resize(1);  // no name for these
    EXPECT_TRUE(save(editor.WriteLists(0)));
    EXPECT_FALSE(root.exists("/etc/atm/bridged0"));
    EXPECT_THAT(log.text, testing::HasSubstr("No ElanTbl For The Clients Of - /Adapter0/LES1\n"));

    devices.lec[1][0].pvcs = {pvc};  // the key is missing: written or not, it could not be found again
    devices.lec[1][1].pvcs = {pvc};  // the name that stands there cannot be read
    EXPECT_FALSE(editor.WriteLists(1));
    EXPECT_EQ(editor.failures(),
              (std::vector<SaveFailure>{{file, "/Adapter1/LEC0 cannot take the name of a PVC file"},
                                        {file, "the name of a PVC file in /Adapter1/LEC1 is too long"}}));

    AtmDevices again;
    EXPECT_TRUE(DriverPdfEdit(nullptr, false, again).ReadPdf());
    EXPECT_THAT(again.lec[0][1].pvcs, ElementsAre(pvc));
    EXPECT_THAT(again.lec[0][2].pvcs, ElementsAre(pvc, pvc));
    EXPECT_TRUE(again.lec[0][2].pvcFile.view() == "/etc/atm/pvcconf0.2" && again.lec[0][0].pvcs.empty());
}

TEST_F(DriverPdf, ErrorsAreShownOnRequest) {
    std::vector<std::string> shown;
    const auto show = [&](const std::string& text, const std::string&) { shown.push_back(text); };
    PdfEdit noisy(show, true);
    root.write(file, "[Adapter0\n]\n");
    int number = 5;
    EXPECT_FALSE(noisy.QueryValue("k", &number, keyLong, 4, true));
    EXPECT_FALSE(noisy.OpenKey("/None", 0, true));
    EXPECT_FALSE(noisy.OpenKey("/None", 0, false));
    EXPECT_TRUE(noisy.OpenKey("/Adapter0", sectionForWriting, true));
    EXPECT_EQ(noisy.status(), 0);
    EXPECT_FALSE(noisy.SetValue(std::string(300, 'x'), &number, keyLong, 4, true));
    EXPECT_EQ(noisy.status(), 2);
    EXPECT_THAT(shown, ElementsAre("Pdf Error On - k", "Pdf Error On - /None",
                                   "Pdf Error On - " + std::string(256 - 15, 'x')));
}
