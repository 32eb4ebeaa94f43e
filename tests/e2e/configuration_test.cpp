#include "tests/e2e/configurationtest.h"

#include "driver/dai_api.h"

// The MTU of LEC 1 from 1516 to 4544: requests, file, cursor.
TEST_F(ConfigurationTest, OneChangedClientIsRestartedWithItsPvcsAndSaved) {
    start();
    told();
    const std::string before = root.read(parameterFile);
    configure([&] {
        EXPECT_TRUE(user->shellLike("Setup ATM Adapter 1  -  00:a0:3e:00:00:01"));
        EXPECT_EQ(shownItem(elanMtuCBO), "1516");
        choose(elanMtuCBO, "Down");
        EXPECT_EQ(shownItem(elanMtuCBO), "4544");
        EXPECT_EQ(text(l3MtuED), "1500") << "the arrow keys may be on their way";
        user->key("Tab");
        EXPECT_EQ(text(l3MtuED), "4544") << "follows the larger ELAN MTU";
        EXPECT_FALSE(user->widget("lesPage") || user->widget("lecsPage")) << "those are advanced";
        EXPECT_EQ(window->cursor(), zArrowCursor);
        press(okBTN);
    });
    EXPECT_EQ(window->cursor(), zArrowCursor);
    EXPECT_EQ(user->shellLike("Setup "), nullptr);
    EXPECT_EQ(told(), (Names{"lec.start 0", "lec.pvc-add 0", "lec.pvc-add 0"}));

    EXPECT_EQ(differences(before, root.read(parameterFile)),
              (Names{"-\t\tMfs                     = 1", "+\t\tMfs                     = 2",
                     "-\t\tL3Mtu                   = 1500  # largest packet of the layer above",
                     "+\t\tL3Mtu                   = 4544  # largest packet of the layer above"}));
    expectTheFilesHold(dump());
}

TEST_F(ConfigurationTest, OkWithoutAChangeAndCancelTouchNothing) {
    start();
    const std::string running = dump();
    const auto before = files();
    const struct {
        std::vector<Edit> edits;  // the last one closes the dialog
        const char* key = "";     // or this key does
    } ways[] = {{{{okBTN}}},
                {{}, "Return"},
                {{}, "Escape"},
                {{{elanNameED, "other"}, {enableCB}, {cancelBTN}}},
                {{{elanNameED, "other"}, {enableCB}}, "Escape"}};
    const auto expectNothing = [&](const std::function<void()>& session) {
        told();
        configure(session);
        EXPECT_EQ(told(), nothing);
        EXPECT_EQ(files(), before);
    };
    for (const auto& way : ways) {
        SCOPED_TRACE(&way - ways);
        expectNothing([&] {
            fill(way.edits);
            if (*way.key) user->key(way.key);
        });
    }
    expectNothing([&] {
        inSubDialog(addBTN, "lecPvc", [this] {
            enter(pvcVciED, "777");
            user->key("Escape");
        });
        press(okBTN);
    });
    EXPECT_EQ(dump(), running);
}

TEST_F(ConfigurationTest, CheckBoxesGreyWhatIsImpossible) {
    start();
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
        const char* answer;  // to each question
        Names boxes, result;
    } cases[] = {{"follows", "Return", {}, edited},
                 {"refuses", "Return", Names(3, "PVC Error"), edited},
                 {"refuses", "Escape", Names(3, "PVC Error"), initial},
                 {"is not there", "Return", {"Driver Error", "PVC Error", "PVC Error", "PVC Error"}, edited}};
    for (const auto& c : cases) {
        const std::string driver = c.driver;
        SCOPED_TRACE(driver + ' ' + c.answer);
        startAfresh();
        if (driver == "refuses") simulator->ctl("fault lec.control every resp 12");
        if (driver == "is not there") {
            simulator.reset();
            openWindow();
        } else
            told();
        expectBoxes(c.boxes, c.answer, [&] {
            EXPECT_EQ(pvcRows(), initial);
            // Nothing is selected yet: these do nothing, without a word.
            press(modifyBTN);
            press(deleteBTN);
            EXPECT_EQ(user->shellLike("PVC Settings"), nullptr);

            selectRow(1);
            inSubDialog(modifyBTN, "lecPvc", [&] {
                EXPECT_EQ(text(pvcMacED), "00:20:40:00:a1:01");
                EXPECT_EQ(text(pvcVciED), "100");
                EXPECT_TRUE(on(llcSnapRB));
                EXPECT_TRUE(on(broadcastCB));
                fill({{pvcMacED, "aabbcc000001"}, {subOkBTN}});
            });
            inSubDialog(addBTN, "lecPvc", [&] {
                EXPECT_EQ(text(pvcMacED), "aa:bb:cc:00:00:01") << "what was confirmed last";
                fill({{pvcMacED, "aabbcc000002"}, {pvcVciED, "300"}, {subOkBTN}});
            });
            selectRow(1);
            press(deleteBTN);
            EXPECT_EQ(pvcRows(), c.result);
            EXPECT_EQ(table().activeCell().row, c.result == edited ? 2 : 1);
            press(cancelBTN);
        });
        if (simulator) {
            EXPECT_EQ(told(), (Names{"lec.pvc-change 0", "lec.pvc-add 0", "lec.pvc-delete 0"}));
        }
        EXPECT_EQ(atmDevices.lec[0][0].pvcs.size(), 2U) << "also after Cancel";
        const std::string list = root.read("/etc/atm/pvcconf0.0");
        EXPECT_EQ(has(list, "aabbcc000002"), c.result == edited);
        EXPECT_TRUE(has(list, "=10\t# MB/s")) << "the rate is carried along";
    }
}

// Values that no control can show: in the parameter file, on the page, and there again after OK.
TEST_F(ConfigurationTest, ValuesThatNoControlCanShowSurviveOk) {
    edit(parameterFile, "Mfs                     = 1", "Mfs                     = 4");
    edit(parameterFile, "L3Mtu                   = 1500", "L3Mtu                   = 18190");
    edit(parameterFile, "ElanType                = 0", "ElanType                = 7");
    edit("/etc/atm/pvcconf0.0", "=100", "=41000");
    const auto before = files();
    start();
    told();
    // The driver does not know such a PVC.
    expectBoxes({"PVC Error"}, [&] {
        EXPECT_EQ(shownItem(elanMtuCBO), "");
        EXPECT_EQ(shownItem(elanTypeCBO), "");
        EXPECT_EQ(text(l3MtuED), "18190");
        tab(2);
        tab(1);
        selectRow(1);
        inSubDialog(modifyBTN, "lecPvc", [&] {
            EXPECT_EQ(text(pvcVciED), "41000");
            user->key("Return");
        });
        EXPECT_EQ(pvcRows().front(), "00:20:40:00:a1:01 | 0 / 41000 | LLC_SNAP | TRUE");
        EXPECT_EQ(XUser::cutTexts(table()), Names{});
        press(okBTN);
    });
    EXPECT_EQ(told(), Names{"lec.pvc-change 0"});
    EXPECT_EQ(files(), before);
}
