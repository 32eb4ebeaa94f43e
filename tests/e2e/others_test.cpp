// Somebody else changes the same files while Setup is open, names files that are no lists, or holds the lock.
#include "tests/e2e/configurationtest.h"
#include "tests/support/holder.h"

namespace fs = std::filesystem;

namespace {

constexpr const char *lecList = "/etc/atm/pvcconf0.0", *ipList = "/etc/atm/pvcconf0.32";
constexpr const char* pvc77 =
    "[PVC\n\tVC    =77\n\tAddr  =00204000a177\n\tEncap =1\n\tBcast =0\n\tRate  =3\n]\n";

}  // namespace

class OthersTest : public ConfigurationTest {
  protected:
    // Somebody changes all sorts of things.
    void othersEdit() {
        edit(parameterFile, "Mfs                     = 2\n\t\tL3Mtu                   = 4470",
             "Mfs                     = 3\n\t\tL3Mtu                   = 9000");  // LEC 2
        edit(parameterFile, "InterruptNumber", "# somebody was here\n\tInterruptNumber");
        root.write(lecList, root.read(lecList) + pvc77);
        root.write("/etc/atm/pvcconf0.3", pvc77);
        fs::remove(root.at(ipList));
    }
    std::string pvcOf(std::size_t lec) {
        std::string all;
        for (const AtmBridgedPvc& pvc : atmDevices.lec[0][lec - 1].pvcs) all += fmt::format("{} ", pvc.vci);
        return all;
    }
};

TEST_F(OthersTest, WhatTheyChangedWhileSetupIsOpenStays) {
    for (const bool touched : {false, true})
        for (const int close : {okBTN, cancelBTN}) {
            SCOPED_TRACE(fmt::format("{} {}", touched, close == okBTN ? "OK" : "Cancel"));
            startAfresh();
            std::map<std::string, std::string> theirs;
            expectBoxes({}, [&] {
                if (touched) {
                    enter(elanNameED, "other");
                    addPvc();
                }
                othersEdit();
                theirs = files();
                press(close);
            });
            std::map<std::string, std::string> now = files();
            if (touched) {
                EXPECT_EQ(differences(theirs[parameterFile], now[parameterFile]),
                          close == okBTN ? Names({"-\t\tElanName                = engineering",
                                                  "+\t\tElanName                = other"})
                                         : Names{});
                EXPECT_EQ(pvcOf(1), "100 101 77 204 ");
                EXPECT_NE(now[lecList].find("=204"), std::string::npos);
                EXPECT_NE(now[lecList].find("=77"), std::string::npos);
                now.erase(parameterFile), theirs.erase(parameterFile);
                now.erase(lecList), theirs.erase(lecList);
            }
            EXPECT_EQ(now, theirs);
            configure([&] {
                EXPECT_EQ(pvcRows().size(), touched ? 4U : 3U) << "Setup reads again";
                tab(2);
                EXPECT_EQ(shownItem(elanMtuCBO), "9234");
                tab(4);
                EXPECT_EQ(pvcRows().size(), 1U);
                turnTo("ip1577Page");
                EXPECT_EQ(pvcRows().size(), 0U);
                user->key("Escape");
            });
        }
}

// The name of the first client's PVC file leads to something else: it is named, and stays as it is.
TEST_F(OthersTest, AFileThatIsNoListOfItsKindIsNeitherWrittenNorRemoved) {
    constexpr const char* wrongKind = "it is not a list of this kind";
    const struct {
        const char *file, *reason;
        int close = okBTN;
    } cases[] = {{parameterFile, wrongKind},
                 {parameterFile, wrongKind, cancelBTN},
                 {"/etc/atm/notes", wrongKind},
                 {"/etc/hosts", "it is not a list, and not in /etc/atm"},
                 {"/etc/atm/../absent", "it is not a list, and not in /etc/atm", cancelBTN},
                 {"/etc/atm/directory", "it is not a regular file", cancelBTN}};
    root.write("/etc/atm/notes", "remember the milk\n");
    root.write("/etc/hosts", "# 127.0.0.1 localhost\n");
    fs::create_directory(root.at("/etc/atm/directory"));
    const std::string sample = root.read(parameterFile);
    for (const auto& c : cases) {
        SCOPED_TRACE(fmt::format("{} {}", c.file, c.close == okBTN ? "OK" : "Cancel"));
        root.write(parameterFile, sample);
        edit(parameterFile, lecList, c.file);
        atmDevices = AtmDevices();
        start();
        const auto before = files();
        expectBoxes({"Configuration Error"}, [&] {
            addPvc();
            press(c.close);
        });
        EXPECT_EQ(boxText, saveFailed(c.file, c.reason));
        EXPECT_EQ(files(), before);
        EXPECT_EQ(root.read("/etc/hosts"), "# 127.0.0.1 localhost\n");
        EXPECT_FALSE(root.exists("/etc/absent"));
        EXPECT_TRUE(fs::is_directory(root.at("/etc/atm/directory")));
        testing::internal::CaptureStderr();
        window.reset();
        EXPECT_EQ(testing::internal::GetCapturedStderr(),
                  "tarvolin: adapter 1: the list of LEC 1 is not saved, the driver has it\n");
    }
}

TEST_F(OthersTest, AConflictIsAskedAndOneSideIsTaken) {
    for (const bool ok : {true, false}) {
        SCOPED_TRACE(ok);
        startAfresh();
        expectBoxes({"Configuration Conflict"}, ok ? "Return" : "Escape", [&] {
            enter(elanNameED, "mine");
            enter(l3MtuED, "1400");
            selectRow(1);
            press(deleteBTN);
            tab(2);
            enter(elanNameED, "mine2");
            for (const auto& [from, to] :
                 {std::pair("engineering", "theirs"), {"accounting", "theirs2"}, {"backbone", "theirs3"}})
                edit(parameterFile, fmt::format("ElanName                = {}", from),
                     fmt::format("ElanName                = {}", to));
            edit(lecList, "=10\t# MB/s", "=25");  // the rate of the PVC that is deleted
            told();
            press(okBTN);
        });
        EXPECT_EQ(boxText, "Somebody else has changed the same:"
                           "LEC 1 ELAN Name: yours mine, in the file theirs"
                           "LEC 1 PVC 0 / 100: yours removed, in the file "
                           "VCI 100, 00:20:40:00:a1:01, LLC, broadcast, 25 MB/s"
                           "LEC 2 ELAN Name: yours mine2, in the file theirs2"
                           "OK takes yours. Cancel takes the file's.");
        const auto now = files();
        EXPECT_EQ(nameOfClient(root, 1), ok ? "mine" : "theirs");
        EXPECT_EQ(nameOfClient(root, 2), ok ? "mine2" : "theirs2");
        EXPECT_EQ(nameOfClient(root, 3), "theirs3");
        EXPECT_NE(now.at(parameterFile).find("L3Mtu                   = 1400"), std::string::npos);
        EXPECT_EQ(now.at(lecList).find("=100") == std::string::npos, ok);
        // Where the user has given everything up nothing is restarted.
        EXPECT_EQ(told(), ok ? Names({"lec.start 0", "lec.pvc-add 0", "lec.start 1"})
                             : Names({"lec.start 0", "lec.pvc-add 0", "lec.pvc-add 0"}));
    }
}

// Also when only lists are saved. What both changed is named with what differs.
TEST_F(OthersTest, OfManyConflictsTwentyAreNamedAndTheOthersCounted) {
    std::string mine, theirs;
    for (int i = 0; i < 25; ++i) {
        const std::string head = fmt::format("[PVC\n\tVC    ={}\n\tAddr  =00204000b1{:02x}\n", 100 + i, i);
        mine += head + "\tEncap =1\n\tBcast =0\n\tRate  =10\n]\n";
        theirs += head + "\tEncap =1\n\tBcast =1\n\tRate  =25\n]\n";
    }
    root.write(lecList, mine);
    start("1");
    expectBoxes({"Configuration Conflict"}, [&] {
        for (AtmBridgedPvc& pvc : xferBuffer[0].pvcs) pvc.encapsulation = 0;  // as if by Modify
        root.write(lecList, theirs);
        press(cancelBTN);
    });
    std::string text = "Somebody else has changed the same:";
    for (int i = 0; i < 20; ++i)
        text += fmt::format(
            "LEC 1 PVC 0 / {}: yours Null, no broadcast, 10 MB/s, in the file LLC, broadcast, 25 MB/s",
            100 + i);
    EXPECT_EQ(boxText, text + "and 5 moreOK takes yours. Cancel takes the file's.");
    ASSERT_EQ(atmDevices.lec[0][0].pvcs.size(), 25U);
    for (const AtmBridgedPvc& pvc : atmDevices.lec[0][0].pvcs) EXPECT_EQ(pvc.encapsulation, 0);
    EXPECT_EQ(root.read(lecList).find("Rate  =25"), std::string::npos);
}

// Also when nothing is changed, since nobody reads the log.
TEST_F(OthersTest, WhatBecameOfAnInterruptedSaveIsSaid) {
    root.write("/etc/atm/.tarvolin-save", "cut");
    start();
    expectBoxes({"Configuration Error"}, [&] { press(cancelBTN); });
    EXPECT_THAT(boxText, testing::HasSubstr("An interrupted save"));
    expectBoxes({}, [&] { press(cancelBTN); });
}

TEST_F(OthersTest, WhoHoldsTheLockIsNamedAndWaitedForOrNot) {
    start("1");
    const std::map<std::string, std::string> before = files();
    Holder holder;
    const std::string busy = fmt::format("The configuration is being changed by {}."
                                         "OK waits for it again. Cancel gives your changes up."
                                         "What the driver has of your lists already is saved later.",
                                         holder.name());
    const auto began = std::chrono::steady_clock::now();
    expectBoxes({"Configuration Busy"}, "Escape", [&] {
        enter(elanNameED, "other");
        addPvc();
        press(okBTN);
    });
    EXPECT_GT(std::chrono::steady_clock::now() - began, std::chrono::seconds(5));
    EXPECT_EQ(boxText, busy);
    EXPECT_EQ(files(), before);

    // The driver has the PVC; the next save takes it along.
    configure([&] {
        EXPECT_EQ(text(elanNameED), "engineering");
        EXPECT_EQ(pvcRows().size(), 3U);
        enter(elanNameED, "another");
        inDialog("Configuration Busy", [&] {
            holder.end();
            user->key("Return");
        });
        press(okBTN);
    });
    EXPECT_EQ(nameOfClient(root, 1), "another");
    EXPECT_NE(root.read(lecList).find("=204"), std::string::npos);
}

// Close asks as OK would. (A run that has ended stays so: this is a test of its own.)
TEST_F(OthersTest, ListsThatWaitAreAskedAboutBeforeTheRunEnds) {
    start("1");
    Holder holder;
    expectBoxes({"Configuration Busy"}, "Escape", [&] {
        addPvc();
        selectRow(1);
        press(deleteBTN);  // 100
        press(cancelBTN);
    });
    edit(lecList, "=10\t# MB/s", "=25");
    holder.end();
    const auto boxes = boxesOf([&] {
        user->click(user->widget(closeBTN));
        EXPECT_EQ(application.run(), 0);
    });
    EXPECT_EQ(boxes, Names{"Configuration Conflict"});
    EXPECT_THAT(boxText, testing::HasSubstr("LEC 1 PVC 0 / 100: yours removed, in the file VCI 100"));
    EXPECT_EQ(root.read(lecList).find("=100"), std::string::npos);
    EXPECT_NE(root.read(lecList).find("=204"), std::string::npos);
}

TEST_F(OthersTest, WhoEndsWhileTheLockIsHeldIsAskedOnceAndToldWhatIsLost) {
    start("1");
    const Holder holder;
    expectBoxes({"Configuration Busy"}, "Escape", [&] {
        addPvc();
        press(cancelBTN);
    });
    testing::internal::CaptureStderr();
    const auto boxes = boxesOf(
        [&] {
            user->click(user->widget(closeBTN));
            EXPECT_EQ(application.run(), 0);
        },
        "Escape");
    EXPECT_EQ(boxes, Names{"Configuration Busy"});
    EXPECT_THAT(boxText, testing::EndsWith("Cancel ends without saving the lists of LEC 1."));
    const auto began = std::chrono::steady_clock::now();
    window.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - began, std::chrono::seconds(2));
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "tarvolin: adapter 1: the list of LEC 1 is not saved, the driver has it\n");
}
