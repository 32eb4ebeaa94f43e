// A whole change beside others that change the same files, and under every fault of the file system.
#include "change/adapterchange.h"

#include "administrator.h"
#include "config/pvcfile.h"
#include "tests/support/configuration.h"
#include "tests/support/failingfiles.h"
#include "tests/support/logcapture.h"
#include "tests/support/simulator.h"
#include "tests/support/temproot.h"
#include "tests/support/victim.h"

#include <csignal>
#include <random>
#include <unistd.h>

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

constexpr auto vci = &AtmBridgedPvc::vci;
constexpr const char *file = "/etc/atm/tvconf", *list = "/etc/atm/pvcconf0.0";

AtmBridgedPvc pvc(int number, int rate = 0) {
    AtmBridgedPvc made;
    made.vci = static_cast<std::uint16_t>(number);
    made.rate = rate;
    return made;
}

struct Changes : testing::Test {
    SampleRoot root;
    LogCapture log;
    Administrator user, other;
};

}  // namespace

TEST_F(Changes, WhatOthersChangedStaysTheirs) {
    other.lec(2).elanName = "theirs";
    other.lec(1).pvcs.push_back(pvc(300));
    EXPECT_TRUE(other.end().wrote);
    root.edit(file, "InterruptNumber", "# somebody was here\n\tInterruptNumber");
    user.lec(2).mtuClass = 3;
    user.lec(1).pvcs.push_back(pvc(301));
    user.lec(1).pvcs.erase(user.lec(1).pvcs.begin());
    const ChangeResult result = user.end();
    EXPECT_TRUE(result.wrote);
    EXPECT_THAT(user.questions, IsEmpty());
    const AtmDevices now = inFiles();
    EXPECT_EQ(now.lec[0][1].elanName.view(), "theirs");
    EXPECT_EQ(now.lec[0][1].mtuClass, 3);
    EXPECT_THAT(each(vci, now.lec[0][0].pvcs), ElementsAre(101, 300, 301));
    EXPECT_THAT(root.read(file), HasSubstr("# somebody was here"));
    ASSERT_EQ(result.record.takenOverKeys.size(), 1U);
    EXPECT_EQ(result.record.takenOverKeys[0].key, "adapter1/lec2.elanName");
    EXPECT_THAT(log.text, HasSubstr("Changed By Others - adapter1/lec2.elanName From "));
    EXPECT_EQ(user.lec(2).elanName.view(), "theirs") << "and the next dialog shows it";
}

TEST_F(Changes, AfterCancelTheNameOfANewListFileIsSavedWithIt) {
    root.edit(file, "= /etc/atm/pvcconf0.1", "=");
    user.begin();
    user.lec(2).pvcs.push_back(pvc(300));
    user.lec(2).mtuClass = 3;
    EXPECT_TRUE(user.end(false).wrote);
    const AtmDevices now = inFiles();
    EXPECT_EQ(now.lec[0][1].pvcFile.view(), "/etc/atm/pvcconf0.1");
    EXPECT_THAT(each(vci, now.lec[0][1].pvcs), ElementsAre(300));
    EXPECT_NE(now.lec[0][1].mtuClass, 3);
}

TEST_F(Changes, WhatIsNoFileInThePlaceOfAListIsLeftAlone) {
    fs::create_directory(root.at("/etc/atm/pvcconf0.3"));
    user.begin();
    user.lec(4).mtuClass = 3;
    EXPECT_THAT(user.end().failures, IsEmpty());
    EXPECT_EQ(inFiles().lec[0][3].mtuClass, 3);
    EXPECT_TRUE(fs::is_directory(root.at("/etc/atm/pvcconf0.3")));
}

TEST_F(Changes, ConflictsAreAskedAndOneOfTheTwoIsTaken) {
    for (const bool mine : {true, false}) {
        writeSampleConfiguration(root);
        user.begin();
        other.begin();
        other.lec(3).mtuClass = 3;
        other.lec(1).pvcs[0].rate = 25;                          // 100: both change it
        other.lec(1).pvcs.erase(other.lec(1).pvcs.begin() + 1);  // 101: they remove it
        other.mine.les[0][0].enabled ^= 1;                       // both do the same
        other.end();
        user.lec(3).mtuClass = 2;
        user.lec(1).pvcs[0].rate = 7;
        user.lec(1).pvcs[1].rate = 8;
        user.mine.les[0][0].enabled ^= 1;
        const ChangeResult result = user.end(true, mine);
        ASSERT_EQ(user.questions.size(), 1U);
        EXPECT_THAT(user.questions[0], HasSubstr("\nLEC 3 ELAN MTU: yours 4544, in the file 9234\n"));
        EXPECT_THAT(user.questions[0], HasSubstr("LEC 1 PVC 0 / 100: yours 7 MB/s, in the file 25 MB/s\n"));
        EXPECT_THAT(user.questions[0], HasSubstr(" 8 MB/s, in the file removed\n"));
        EXPECT_THAT(user.questions[0], testing::Not(HasSubstr("LES 1")));
        const AtmDevices now = inFiles();
        EXPECT_EQ(now.lec[0][2].mtuClass, mine ? 2 : 3);
        const std::vector rates = each(&AtmBridgedPvc::rate, now.lec[0][0].pvcs);
        EXPECT_EQ(rates, mine ? std::vector({7, 8}) : std::vector({25}));
        EXPECT_EQ(user.lec(3).mtuClass, mine ? 2 : 3);
    }
}

TEST_F(Changes, WhatBothHaveAddedIsThereOnce) {
    for (Administrator* one : {&user, &other}) one->lec(1).pvcs.push_back(pvc(300));
    user.lec(1).pvcs.push_back(pvc(301));
    user.lec(1).pvcs.push_back(pvc(302, 7));
    other.lec(1).pvcs.push_back(pvc(302, 8));
    other.end();
    const ChangeResult result = user.end(true, false, true);
    EXPECT_THAT(user.questions,
                ElementsAre(HasSubstr("LEC 1 PVC 0 / 302: yours 7 MB/s, in the file 8 MB/s\n")));
    EXPECT_THAT(each(vci, inFiles().lec[0][0].pvcs), ElementsAre(100, 101, 300, 302, 301));
    EXPECT_THAT(result.notes, ElementsAre(testing::StartsWith("PVC 0 / 302 of LEC 1 is now as in the file.")))
        << "the driver has 7";
}

// Neither is taken for removed by others, nor is it a reason to begin again for ever.
TEST_F(Changes, AListThatCannotBeReadStaysAsItWas) {
    user.lec(1).mtuClass = 3;
    root.write(list, "something else\n");
    EXPECT_THAT(user.end().failures, ElementsAre(SaveFailure{list, "it is not a list of this kind"}));
    EXPECT_THAT(each(vci, user.lec(1).pvcs), ElementsAre(100, 101));
    EXPECT_EQ(inFiles().lec[0][0].mtuClass, 3);
    EXPECT_EQ(root.read(list), "something else\n");
}

TEST_F(Changes, OneFileOfSeveralNames) {
    fs::create_hard_link(root.at(list), root.at("/etc/atm/pvcconf0.1"));
    user.begin();
    user.lec(1).mtuClass = 3;
    user.lec(1).pvcs.push_back(pvc(300));
    EXPECT_TRUE(user.end().wrote);
    EXPECT_THAT(each(vci, inFiles().lec[0][0].pvcs), ElementsAre(100, 101, 300));
    EXPECT_THAT(each(vci, inFiles().lec[0][1].pvcs), ElementsAre(100, 101));
    for (const char* name :
         {"/etc/atm/.tarvolin-save", "/etc/atm/sub/list", "/etc/atm/./tvconf", "/etc/atm"}) {
        writeSampleConfiguration(root);
        root.edit(file, "= /etc/atm/pvcconf0.2", std::string("= ") + name);
        user.begin();
        user.lec(3).pvcs.push_back(pvc(300));
        user.lec(1).l3Mtu += 1;
        EXPECT_EQ(user.end().failures.size(), 1U) << name;
        EXPECT_THAT(user.questions, IsEmpty()) << name;
        EXPECT_EQ(inFiles().lec[0][0].l3Mtu, user.lec(1).l3Mtu) << name;
    }
}

TEST_F(Changes, AFileThatChangesWhileItIsSavedIsMergedAgain) {
    user.lec(1).mtuClass = 3;
    FailingFiles files;
    bool done = false;
    files.onCall = [&](FileCall kind) {  // the copy has been made
        if (kind != FileCall::sync || std::exchange(done, true)) return;
        root.edit(file, "ElanName                = ", "ElanName                = x");
    };
    EXPECT_TRUE(user.end().wrote);
    EXPECT_TRUE(done);
    const AtmDevices now = inFiles();
    EXPECT_EQ(now.lec[0][0].mtuClass, 3);
    EXPECT_TRUE(now.lec[0][0].elanName.view().starts_with('x')) << now.lec[0][0].elanName.view();
    EXPECT_TRUE(root.exists("/var/lib/tarvolin/history/0001/manifest.json"));
}

TEST_F(Changes, WhatTheFileDoesNotKeepIsNamed) {
    root.edit(file, "L3Mtu", "#L3Mtu");
    user.begin();
    user.lec(1).l3Mtu = 9000;
    user.lec(2).elanName = std::string(31, 'n');
    const ChangeResult result = user.end();
    EXPECT_THAT(result.notes,
                ElementsAre("LEC 1 L3 MTU: /Adapter0/LEC0 has no L3Mtu. The change is not in the file.",
                            "LEC 2 ELAN Name: only the first 30 characters are read back."));
    user.begin();
    EXPECT_THAT(user.end().notes, IsEmpty()) << "it is not the user's change any more";
}

TEST_F(Changes, EachSaveThatChangesAFileIsInTheHistory) {
    const std::string before = root.read(file);
    user.lec(3).mtuClass = 2;
    user.lec(1).pvcs.push_back(pvc(300));
    EXPECT_TRUE(user.end().wrote);
    const std::string entry = "/var/lib/tarvolin/history/0001/";
    const std::string manifest = root.read(entry + "manifest.json");
    for (const char* part : {"adapter1/lec3.mtu", "\"1516\"", "\"4544\"", "adapter1/lec1.pvcs", " vci 300 "})
        EXPECT_THAT(manifest, HasSubstr(part));
    bool kept = false;
    for (const auto& stored : fs::directory_iterator(root.at(entry)))
        kept |= root.read(entry + stored.path().filename().string()) == before;
    EXPECT_TRUE(kept);
    user.begin();
    EXPECT_FALSE(user.end().wrote);
    EXPECT_FALSE(root.exists("/var/lib/tarvolin/history/0002"));
}

namespace {

// Changes a setting and all five lists that adapter 1 can have.
void changeEverything(Administrator& user, int number) {
    user.lec(1).l3Mtu = number;
    for (std::size_t m = 1; m <= 4; ++m) user.lec(m).pvcs = {pvc(number, static_cast<int>(m))};
    AtmRoutedPvc routed;
    routed.vci = static_cast<std::uint16_t>(number);
    user.mine.ip1577[0].pvcs = {routed};
}

// The number in all places, or 0 if they differ.
int numberInFiles() {
    const AtmDevices devices = inFiles();
    const int number = devices.lec[0][0].l3Mtu;
    bool same = each(&AtmRoutedPvc::vci, devices.ip1577[0].pvcs) == std::vector{number};
    for (const AtmLEC& lec : devices.lec[0]) same &= each(vci, lec.pvcs) == std::vector{number};
    return same ? number : 0;
}

// With TV_THOROUGH in the environment every error at every call, and a thousand kills.
bool thorough() {
    return std::getenv("TV_THOROUGH") != nullptr;
}

// Saves of the first adapter, the only one: a quarter of the reading.
struct Saves : Changes {
    Saves() {
        const std::string text = root.read(file);
        root.write(file, text.substr(0, text.find("[Adapter1")));
        Administrator only;
        changeEverything(only, 1000);
        EXPECT_TRUE(only.end().wrote);
    }
};

}  // namespace

// The whole save with its lock, history and all: the files are the old or the new ones, and a failure is
// said.
TEST_F(Saves, EveryCallFailedInTurn) {
    int number = 1000, faults = 0;
    constexpr std::array errors{ENOSPC, EIO, EDQUOT, EROFS, EINTR};
    for (std::size_t pass = 0; pass < (thorough() ? errors.size() : 2); ++pass)
        for (int k = 1;; ++k, ++faults) {
            const int error = errors[(3 * pass + static_cast<std::size_t>(k)) % errors.size()];
            Administrator saving;
            changeEverything(saving, number + 1);
            FailingFiles files;
            files.skipSyncs();
            files.failAt(k, error);
            const ChangeResult result = saving.end();
            if (!files.failed()) break;
            const int now = numberInFiles();
            EXPECT_TRUE(now == number || now == number + 1) << k << ' ' << std::strerror(error);
            EXPECT_TRUE(now == number + 1 || !result.failures.empty()) << k << ' ' << std::strerror(error);
            number = std::max(number, now);
        }
    RecordProperty("faults", faults);
    EXPECT_GT(faults, 350);
}

// Real saves of a process that is killed; whoever comes next completes what was begun.
TEST_F(Saves, KilledAtAnyMomentTheFilesAreAllOldOrAllNew) {
    std::mt19937 random(1);
    int mixed = 0, completed = 0;
    const int kills = thorough() ? 1000 : 60;
    for (int kill = 0; kill < kills; ++kill) {
        const int atRename = kill % 2 ? static_cast<int>(1 + random() % 7) : 0;  // 0: at any moment
        Victim victim([&](const std::function<void()>& ready) {
            FailingFiles files;
            files.skipSyncs();
            int left = 0;
            files.onCall = [&](FileCall kind) {
                if (kind == FileCall::rename && --left == 0) ready(), ::pause();
            };
            Administrator saving;
            for (int number = 1000;; number = number == 9999 ? 1000 : number + 1) {
                saving.begin();
                changeEverything(saving, number);
                if (!saving.end().failures.empty()) return;
                if (number != 1000) continue;
                left = atRename;
                if (!atRename) ready();
            }
        });
        if (!atRename) std::this_thread::sleep_for(std::chrono::microseconds(random() % 10000));
        ASSERT_TRUE(victim.kill()) << "a save failed";
        completed += root.exists("/etc/atm/.tarvolin-save");
        Administrator next;
        mixed += numberInFiles() == 0;
    }
    RecordProperty("completed", completed);
    EXPECT_EQ(mixed, 0);
    EXPECT_GT(completed, kills / 4) << "too few were struck between the first and the last file";
    EXPECT_EQ(root.temporaryCopies(), 0);
}
