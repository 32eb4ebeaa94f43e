// What cannot be read of the files, or is not named in them, is neither changed nor removed, and no reason to
// tell the driver anything else.
#include "change/adapterchange.h"
#include "change/fileset.h"
#include "change/saverecord.h"

#include "administrator.h"
#include "config/pvcfile.h"
#include "tests/support/simulator.h"

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

void edit(const TempRoot& root, const Edit& how) {
    if (how.first == "all") return root.write(file, how.second);
    if (!how.first.empty()) root.edit(file, how.first, how.second);
}

std::map<std::string, std::string> lists(const TempRoot& root) {
    auto all = root.files("/etc/atm");
    all.erase(file);
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
        const SampleRoot root;
        edit(root, c.before);
        Administrator user;
        const auto was = lists(root);
        if (c.adds) user.lec(1).pvcs.emplace_back().vci = 204;
        edit(root, c.meanwhile);
        std::string failures;
        for (const SaveFailure& failure : user.end(c.settings).failures) failures += failure.reason;
        EXPECT_THAT(user.questions, testing::IsEmpty()) << c.what;
        EXPECT_EQ(lists(root), was) << c.what;
        if (c.failure != "-") {
            EXPECT_EQ(failures, c.failure) << c.what;
        }
    }
}

// A section that cannot be read says nothing of the client, which runs.
TEST(Unreadable, ARunningClientIsNotStopped) {
    const SampleRoot root;
    const Simulator simulator({"--frozen", "--adapters", "1"});
    Administrator user;
    ChangeOrder order{.adapters = {0}, .before = user.before, .driver = true};
    order.changed[0].lec.set(0);
    user.lec(1).l3Mtu = 1400;
    edit(root, emptied);
    AdapterChange change(user.configuration, order);
    EXPECT_FALSE(change.run());
    EXPECT_THAT(simulator.ctl("dump config"), testing::HasSubstr("config lec 1.1 enabled 1\n"));
    EXPECT_THAT(simulator.ctl("dump config"), testing::HasSubstr("config lec 1.1 l3Mtu 1400\n"));
}

// A restarted client gets its PVCs from the list, of which nothing is known here.
TEST(Unreadable, ARestartWithoutTheListIsSaid) {
    const SampleRoot root;
    const Simulator simulator({"--frozen", "--adapters", "1"});
    fs::remove(root.at("/etc/atm/pvcconf0.0"));
    fs::create_directory(root.at("/etc/atm/pvcconf0.0"));
    Administrator user;
    ChangeOrder order{.adapters = {0}, .before = user.before, .driver = true};
    order.changed[0].lec.set(0);
    user.lec(1).l3Mtu = 1400;
    AdapterChange change(user.configuration, order);
    EXPECT_FALSE(change.run());
    EXPECT_THAT(change.result().notes,
                testing::ElementsAre("LEC 1 was given no list: /etc/atm/pvcconf0.0 cannot be read."));
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
