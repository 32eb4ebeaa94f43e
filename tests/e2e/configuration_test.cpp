#include <gtest/gtest.h>  // before the window system's macros

#include "tests/e2e/configurationtest.h"

#include "driver/dai_api.h"

#include <chrono>
#include <fmt/format.h>

// The MTU of LEC 1 from 1516 to 4544: requests, file, cursor.
TEST_F(ConfigurationTest, OneChangedClientIsRestartedWithItsPvcsAndSaved) {
    start({"--frozen", "--adapters", "1,2"});
    simulator->ctl("log clear");
    const std::string before = root.read(parameterFile), runningBefore = dump();
    int cursorInside = 0;
    configure([&] {
        EXPECT_EQ(user->shellLike("Setup ") ? XUser::titleOf(user->shellLike("Setup ")) : "",
                  "Setup ATM Adapter 1  -  00:a0:3e:00:00:01");
        EXPECT_EQ(shownItem(elanMtuCBO), "1516");
        choose(elanMtuCBO, "Down");
        EXPECT_EQ(shownItem(elanMtuCBO), "4544");
        EXPECT_EQ(text(l3MtuED), "4544") << "follows the larger ELAN MTU";
        EXPECT_FALSE(user->widget("lesPage") || user->widget("lecsPage")) << "those are advanced";
        cursorInside = window->cursor();
        press(okBTN);
    });
    EXPECT_EQ(cursorInside, zArrowCursor);
    EXPECT_EQ(window->cursor(), zArrowCursor);
    EXPECT_EQ(user->shellLike("Setup "), nullptr);

    EXPECT_EQ(told(), (Names{"lec.start 0", "lec.pvc-add 0", "lec.pvc-add 0"}));

    EXPECT_EQ(differences(before, root.read(parameterFile)),
              (Names{"-\t\tMfs                     = 1", "+\t\tMfs                     = 2",
                     "-\t\tL3Mtu                   = 1500  # largest packet of the layer above",
                     "+\t\tL3Mtu                   = 4544  # largest packet of the layer above"}));
    EXPECT_EQ(differences(runningBefore, dump()),
              (Names{"-config lec 1.1 mtuClass 1", "+config lec 1.1 mtuClass 2", "-config lec 1.1 l3Mtu 1500",
                     "+config lec 1.1 l3Mtu 4544"}));
    expectTheFilesHold(dump());
}

TEST_F(ConfigurationTest, OkWithoutAChangeAndCancelTouchNothing) {
    start({"--frozen", "--adapters", "1,2"});
    const std::string running = dump();
    const std::string files = root.read(parameterFile) + root.read("/etc/atm/pvcconf0.0");
    const struct {
        const char* name;
        std::function<void()> close;
    } ways[] = {{"OK", [this] { press(okBTN); }},
                {"Return", [this] { user->key("Return"); }},
                {"Cancel after edits",
                 [this] {
                     enter(elanNameED, "other");
                     press(enableCB);
                     press(cancelBTN);
                 }},
                {"Escape", [this] { user->key("Escape"); }},
                {"OK after a PVC that was not confirmed", [this] {
                     inDialog("PVC Settings", [this] {
                         enter(pvcVciED, "777");
                         user->key("Escape");
                     });
                     press(addBTN);
                     press(okBTN);
                 }}};
    for (const auto& way : ways) {
        told();
        configure(way.close);
        EXPECT_EQ(told(), nothing) << way.name;
        EXPECT_EQ(root.read(parameterFile) + root.read("/etc/atm/pvcconf0.0"), files) << way.name;
    }
    EXPECT_EQ(dump(), running);
}

TEST_F(ConfigurationTest, CheckBoxesGreyWhatIsImpossible) {
    start({"--frozen", "--adapters", "1,2"});
    const int always[] = {macAddressLBL, macAddressED, pvcTBL, lecTB, enableCB},
              client[] = {pvcOnlyCB, pvcTableLBL, addBTN, modifyBTN, deleteBTN, l3MtuED, l3MtuLBL},
              servers[] = {elanNameED,      elanNameLBL,      elanTypeCBO,   elanTypeLBL,
                           elanMtuCBO,      elanMtuLBL,       lecsRB,        lesRB,
                           networkPrefixED, networkPrefixLBL, esiSelectorED, esiSelectorLBL};
    const auto expectUsable = [&](bool enabled, bool serversUsed) {
        for (const int id : always) EXPECT_TRUE(usable(id)) << id;
        for (const int id : client) EXPECT_EQ(usable(id), enabled) << id;
        for (const int id : servers) EXPECT_EQ(usable(id), serversUsed) << id;
    };
    told();
    configure([&] {
        expectUsable(true, true);
        press(pvcOnlyCB);
        expectUsable(true, false);
        press(enableCB);
        expectUsable(false, false);
        press(pvcOnlyCB);
        press(pvcOnlyCB);  // greyed: nothing happens
        press(enableCB);
        expectUsable(true, false);
        tab(4);
        expectUsable(false, false);
        tab(2);
        expectUsable(true, true);
        press(enableCB);
        tab(1);
        press(okBTN);
    });
    EXPECT_EQ(told(), (Names{"lec.start 0", "lec.pvc-add 0", "lec.pvc-add 0", "lec.stop 1"}));
}

// Add, Modify and Delete against a driver that follows, one that refuses, and none.
TEST_F(ConfigurationTest, PvcListsFollowTheDriverOrTheUsersConsent) {
    const Names initial{"00:20:40:00:a1:01 | 0 / 100 | LLC_SNAP | TRUE",
                        "00:20:40:00:a1:02 | 0 / 101 | LLC_SNAP | FALSE"};
    const Names edited{"00:20:40:00:a1:02 | 0 / 101 | LLC_SNAP | FALSE",
                       "aa:bb:cc:00:00:02 | 0 / 300 | LLC_SNAP | TRUE"};
    const struct {
        const char* driver;
        const char* answer;  // to each question; none comes when the driver follows
        Names result;
    } cases[] = {{"follows", nullptr, edited},
                 {"refuses", "Return", edited},
                 {"refuses", "Escape", initial},
                 {"is not there", "Return", edited}};
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.driver) + ' ' + (c.answer ? c.answer : ""));
        writeSampleConfiguration(root);
        atmDevices = AtmDevices();
        if (c.driver == std::string("is not there")) {
            simulator.reset();
            openWindow();
        } else {
            start({"--frozen", "--adapters", "1,2"});
            if (c.driver == std::string("refuses")) simulator->ctl("fault lec.control every resp 12");
            told();
        }
        const auto session = [&] {
            configure([&] {
                EXPECT_EQ(pvcRows(), initial);
                // Nothing is selected yet: these do nothing, without a word.
                press(modifyBTN);
                press(deleteBTN);
                EXPECT_EQ(user->shellLike("PVC Settings"), nullptr);

                selectRow(1);
                inDialog("PVC Settings", [&] {
                    EXPECT_EQ(text(pvcMacED), "00:20:40:00:a1:01");
                    EXPECT_EQ(text(pvcVciED), "100");
                    EXPECT_TRUE(on(llcSnapRB));
                    EXPECT_TRUE(on(broadcastCB));
                    enter(pvcMacED, "aabbcc000001");
                    press(subOkBTN);
                });
                if (c.answer) answer(c.answer);
                press(modifyBTN);

                inDialog("PVC Settings", [&] {
                    EXPECT_EQ(text(pvcMacED), "aa:bb:cc:00:00:01") << "what was confirmed last";
                    enter(pvcMacED, "aabbcc000002");
                    enter(pvcVciED, "300");
                    press(subOkBTN);
                });
                if (c.answer) answer(c.answer);
                press(addBTN);

                selectRow(1);
                if (c.answer) answer(c.answer);
                press(deleteBTN);
                EXPECT_EQ(pvcRows(), c.result);
                EXPECT_EQ(table().activeCell().row, c.answer && *c.answer == 'E' ? 1 : 2);
                press(cancelBTN);
            });
        };
        if (!simulator)
            EXPECT_EQ(boxesOf(session).front(), "Driver Error");
        else
            session();
        if (simulator) {
            EXPECT_EQ(told(), (Names{"lec.pvc-change 0", "lec.pvc-add 0", "lec.pvc-delete 0"}));
        }
        EXPECT_EQ(atmDevices.lec[0][0].pvcs.size(), 2U) << "also after Cancel";
        const std::string list = root.read("/etc/atm/pvcconf0.0");
        EXPECT_EQ(list.find("aabbcc000002") != std::string::npos, c.result == edited);
        EXPECT_EQ(list.find("=10\t# MB/s") != std::string::npos, true) << "the rate is carried along";
        window.reset();
    }
}

// Values that no control can show: in the parameter file, on the page, and there again after OK.
TEST_F(ConfigurationTest, ValuesThatNoControlCanShowSurviveOk) {
    std::string file = root.read(parameterFile);
    const auto replace = [&file](const std::string& old, const std::string& now) {
        const auto at = file.find(old);
        ASSERT_NE(at, std::string::npos) << old;
        file.replace(at, old.size(), now);
    };
    replace("Mfs                     = 1", "Mfs                     = 4");
    replace("L3Mtu                   = 1500", "L3Mtu                   = 18190");
    replace("ElanType                = 0", "ElanType                = 7");
    root.write(parameterFile, file);
    std::string list = root.read("/etc/atm/pvcconf0.0");
    list.replace(list.find("=100"), 4, "=41000");
    root.write("/etc/atm/pvcconf0.0", list);
    start({"--frozen", "--adapters", "1,2"});
    told();
    configure([&] {
        EXPECT_EQ(shownItem(elanMtuCBO), "");
        EXPECT_EQ(shownItem(elanTypeCBO), "");
        EXPECT_EQ(text(l3MtuED), "18190");
        tab(2);
        tab(1);
        selectRow(1);
        inDialog("PVC Settings", [&] {
            EXPECT_EQ(text(pvcVciED), "41000");
            user->key("Return");
        });
        answer("Return");  // the driver does not know such a PVC
        press(modifyBTN);
        EXPECT_EQ(pvcRows().front(), "00:20:40:00:a1:01 | 0 / 41000 | LLC_SNAP | TRUE");
        EXPECT_EQ(XUser::cutTexts(table()), Names{});
        press(okBTN);
    });
    EXPECT_EQ(told(), Names{"lec.pvc-change 0"});
    EXPECT_EQ(root.read(parameterFile), file);
    EXPECT_EQ(root.read("/etc/atm/pvcconf0.0"), list);
}

TEST_F(ConfigurationTest, ADriverThatHangsOrGoesAwayCostsNeitherFileNorWindow) {
    const struct {
        const char* fault;
        int seconds;  // at most
        const char* text;
    } cases[] = {{"lec.start every silent", 29,
                  "LEC 1: no answer to the restart. What it runs with is unknown."
                  "Nothing more was sent after a request without an answer."},
                 {"lec.start every hangup", 5,
                  "LEC 1: no answer to the restart. What it runs with is unknown."
                  "The driver was lost. Nothing more was sent."}};
    for (const auto& c : cases) {
        start({"--frozen", "--adapters", "1,2"}, {std::string("fault ") + c.fault});
        const auto begin = std::chrono::steady_clock::now();
        const auto session = [&] {
            configure([&] {
                enter(elanNameED, "other");
                press(okBTN);
            });
        };
        EXPECT_EQ(boxesOf(session), Names{"Driver Error"});
        EXPECT_EQ(boxText,
                  fmt::format("The driver did not take everything:{}The file has the change.", c.text));
        EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(c.seconds)) << c.fault;
        EXPECT_EQ(window->cursor(), zArrowCursor);
        EXPECT_NE(root.read(parameterFile).find("ElanName                = other"), std::string::npos)
            << c.fault;
        user->clickAt(list().widget(), 20, 30);
        EXPECT_EQ(list().selected(), 1) << "the window lives";
        window.reset();
        writeSampleConfiguration(root);
    }
}
