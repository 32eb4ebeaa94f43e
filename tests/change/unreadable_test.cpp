// What cannot be read of the files, or is not named in them, is neither changed nor removed, and no reason to
// tell the driver anything else.
#include "change/adapterchange.h"
#include "change/fileset.h"
#include "change/saverecord.h"

#include "config/pvcfile.h"
#include "tests/support/simulator.h"
#include "tests/support/temproot.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <map>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

constexpr const char* file = "/etc/atm/tvconf";

using Edit = std::pair<std::string, std::string>;  // of the parameter file; from "" : the whole text

struct Case {
    const char* what;
    Edit before, meanwhile;  // as the dialog is opened, and while it is open
    bool settings, adds;     // OK, else Cancel; the user adds a PVC to LEC 1
    std::string failure;     // of the PVC
};

void apply(const TempRoot& root, const Edit& edit) {
    std::string text = root.read(file);
    if (edit.first.empty() && edit.second.empty()) return;
    if (edit.first == "all") return root.write(file, edit.second);
    const std::size_t at = text.find(edit.first);
    ASSERT_NE(at, std::string::npos) << edit.first;
    root.write(file, text.replace(at, edit.first.size(), edit.second));
}

std::map<std::string, std::string> lists(const TempRoot& root) {
    std::map<std::string, std::string> all;
    for (const auto& entry : fs::directory_iterator(root.at("/etc/atm")))
        if (entry.path().filename() != "tvconf")
            all[entry.path().filename()] = root.read("/etc/atm/" + entry.path().filename().string());
    return all;
}

const Edit none;
const Edit unnamed{"= /etc/atm/pvcconf0.0", "="};
const Edit noLine{"PvcConfFile             = /etc/atm/pvcconf0.0", "# no name"};
const Edit emptied{"all", ""};
const Edit renamed{"[Adapter0", "[Adapter7"};
const Edit nul{noLine.first, std::string("\0", 1) + noLine.first};
const Edit longName{"pvcconf0.0", std::string(200, 'p')};
const std::string taken = "it is there already, and /Adapter0/LEC0 does not name it";

const Case cases[] = {
    {"no value, OK", unnamed, none, true, false, ""},
    {"no line, OK", noLine, none, true, false, ""},
    {"no value, a PVC added", unnamed, none, true, true, taken},
    {"no value, a PVC added, Cancel", unnamed, none, false, true, taken},
    {"no line, a PVC added", noLine, none, true, true, taken},
    {"a name that is too long", longName, none, true, true,
     "the name of a PVC file in /Adapter0/LEC0 is too long"},
    {"the name is taken out", none, unnamed, true, false, ""},
    {"its line is taken out", none, noLine, true, false, ""},
    {"its line is taken out, a PVC added", none, noLine, true, true, taken},
    {"the file is emptied", none, emptied, true, false, "-"},
    {"the file is emptied, a PVC added, Cancel", none, emptied, false, true, "-"},
    {"the adapter is renamed", none, renamed, true, false, "-"},
    {"a NUL byte", none, nul, true, false, "-"},
    {"no table of clients", none, {"= /etc/atm/elan0.0", "="}, true, false, ""},
};

}  // namespace

TEST(Unreadable, ListsStay) {
    for (const Case& c : cases) {
        const TempRoot root;
        writeSampleConfiguration(root);
        apply(root, c.before);
        AtmDevices mine;
        Configuration configuration("tarvolin", mine);
        EXPECT_TRUE(configuration.read());
        configuration.readAgain(0);
        const AtmDevices before = mine;
        const auto was = lists(root);
        if (c.adds) mine.lec[0][0].pvcs.emplace_back().vci = 204;
        apply(root, c.meanwhile);
        AdapterChange change(configuration, {.adapter = 0, .settings = c.settings, .before = before});
        const std::optional<Question> question = change.run();
        EXPECT_FALSE(question) << c.what << ": " << question->text;
        EXPECT_EQ(lists(root), was) << c.what;
        std::string failures;
        for (const SaveFailure& failure : change.result().failures) failures += failure.reason;
        if (c.failure != "-") {
            EXPECT_EQ(failures, c.failure) << c.what;
        }
    }
}

// A section that cannot be read says nothing of the client, which runs.
TEST(Unreadable, ARunningClientIsNotStopped) {
    const TempRoot root;
    writeSampleConfiguration(root);
    const Simulator simulator({"--frozen", "--adapters", "1"});
    AtmDevices mine;
    Configuration configuration("tarvolin", mine);
    ASSERT_TRUE(configuration.read());
    ChangeOrder order{.adapter = 0, .before = mine, .driver = true};
    order.changed.lec.set(0);
    mine.lec[0][0].l3Mtu = 1400;
    apply(root, emptied);
    AdapterChange change(configuration, order);
    EXPECT_FALSE(change.run());
    EXPECT_THAT(simulator.ctl("dump config"), testing::HasSubstr("config lec 1.1 enabled 1\n"));
    EXPECT_THAT(simulator.ctl("dump config"), testing::HasSubstr("config lec 1.1 l3Mtu 1400\n"));
}

// Whoever owns the directory may put one there.
TEST(Unreadable, ARecordOfAnotherUserIsNotObeyed) {
    if (::geteuid() != 0) GTEST_SKIP() << "needs another user's file";
    for (const bool foreign : {true, false}) {
        const TempRoot root;
        root.write("/victim", "precious");
        struct stat status {};
        ASSERT_EQ(::stat(root.at("/victim").c_str(), &status), 0);
        const SaveStep step{
            {root.at("/victim").string()}, "", contentHash("precious"), noContent, fileIdentity(status)};
        root.write("/etc/atm/.tarvolin-save", *saveRecordText(std::span(&step, 1)));
        const fs::path record = root.at("/etc/atm/.tarvolin-save");
        if (foreign) {
            ASSERT_EQ(::chown(record.c_str(), 1234, 0), 0);
        } else {
            ::chmod(record.c_str(), 0666);
        }
        std::vector<std::string> notes;
        EXPECT_EQ(recoverFiles({record.string()}, notes), EPERM);
        EXPECT_TRUE(root.exists("/victim"));
        ASSERT_EQ(::chown(record.c_str(), 0, 0), 0);
        ::chmod(record.c_str(), 0600);
        EXPECT_EQ(recoverFiles({record.string()}, notes), 0);
        EXPECT_FALSE(root.exists("/victim")) << "nothing else was in the way";
    }
}

// The copies of this very save change it, over and over.
TEST(Unreadable, ADirectoryInPlaceOfAListHoldsNothingUp) {
    const TempRoot root;
    writeSampleConfiguration(root);
    apply(root, {"= /etc/atm/pvcconf0.0", "= /etc/atm"});
    AtmDevices mine;
    Configuration configuration("tarvolin", mine);
    EXPECT_TRUE(configuration.read());
    const AtmDevices before = mine;
    mine.lec[0][1].l3Mtu = 1400;
    AdapterChange change(configuration, {.adapter = 0, .before = before});
    EXPECT_FALSE(change.run());
    EXPECT_TRUE(change.result().wrote);
}

// A list's file that is a link, to comments outside the folder.
TEST(Unreadable, CommentsElsewhereAreNoEmptyList) {
    const TempRoot root;
    writeSampleConfiguration(root);
    root.write("/notes", "# of somebody\n");
    fs::remove(root.at("/etc/atm/pvcconf0.0"));
    fs::create_symlink("../../notes", root.at("/etc/atm/pvcconf0.0"));
    AtmDevices mine;
    Configuration configuration("tarvolin", mine);
    EXPECT_TRUE(configuration.read());
    const AtmDevices before = mine;
    mine.lec[0][0].pvcs.emplace_back().vci = 204;
    AdapterChange change(configuration, {.adapter = 0, .before = before});
    EXPECT_FALSE(change.run());
    EXPECT_EQ(root.read("/notes"), "# of somebody\n");
    EXPECT_EQ(change.result().failures.size(), 1U);
}
