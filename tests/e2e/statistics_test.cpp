// The statistics dialog around its pages: opening, turning, closing, refreshing.
#include "tests/e2e/statisticstest.h"

TEST_F(StatisticsTest, OnlyThePageOnTopAsksTheDriver) {
    start();
    openDialog();
    EXPECT_EQ(XUser::titleOf(dialog), "Statistics ATM Adapter 1  -  00:a0:3e:00:00:01");
    EXPECT_EQ(window->cursor(), zArrowCursor);
    const struct {
        const char* page;
        Names requests;
    } cases[] = {{"signallingStats", {"sig.link", "vc.table"}},
                 {"aal5Stats", {"adapter.aal", "adapter.suni"}},
                 {"lecStats", {"lec.rows", "lec.state", "lec.stats", "lec.table"}},
                 {"lesStats", {"les.rows", "les.state", "les.stats"}},
                 {"lecsStats", {"lecs.state", "lecs.stats"}},
                 {"ip1577Stats", {"ip.rows", "ip.state", "ip.stats", "ip.table"}},
                 {"signallingStats", {"sig.link", "vc.table"}}};
    for (const auto& c : cases) {
        turnTo(c.page);
        EXPECT_EQ(asked(), c.requests) << c.page;
    }
    press("close");
    EXPECT_EQ(user->shellLike("Statistics "), nullptr);
    EXPECT_EQ(asked(), nothing);
}

TEST_F(StatisticsTest, TheServersPagesBelongToTheAdvancedSettings) {
    start("1");
    const auto captions = [this] {
        Names all;
        for (int i = 0; const Widget sheet = XmTabStackIndexToWidget(named("pages"), i); ++i)
            all.push_back(XUser::labelOf(sheet, XmNtabLabelString));
        return all;
    };
    advSettings = 0;
    openDialog();
    advSettings = 1;  // an open dialog stays as it is
    EXPECT_EQ(captions(), (Names{"Signalling", "AAL5", "LEC ...", "1577"}));
    press("close");
    openDialog();
    EXPECT_EQ(captions(), (Names{"Signalling", "AAL5", "LEC ...", "LES ...", "LECS", "1577"}));
    for (const char* page : {"lesStats", "lecsStats", "ip1577Stats"}) turnTo(page);
}

TEST_F(StatisticsTest, EveryWayOfClosingEndsTheDialogAndNoOther) {
    start();
    for (const std::string way : {"Escape", "Return", "button", "window manager", "main window"}) {
        openDialog();
        const Widget first = dialog;
        openDialog();
        if (way == "main window") {
            window.reset();
            EXPECT_EQ(user->shellLike("Statistics "), nullptr);
            break;
        }
        for (const char* idle : {"apply", "help"}) {
            EXPECT_FALSE(XtIsSensitive(named(idle))) << idle;
            press(idle);
        }
        if (way == "button") press("close");
        if (way == "Escape") user->key("Escape");
        if (way == "Return") {  // it presses the button that has the focus
            XmProcessTraversal(named("pages"), XmTRAVERSE_CURRENT);
            user->key("Return");
        }
        if (way == "window manager") user->askToClose(dialog);
        user->settle();
        EXPECT_EQ(user->shellLike("Statistics "), first) << way;
        backTo(first);
        EXPECT_EQ(asked(), (Names{"sig.link", "vc.table"})) << way;
        press("close");
        EXPECT_EQ(user->shellLike("Statistics "), nullptr) << way;
    }
    EXPECT_EQ(asked(), nothing);
}

TEST_F(StatisticsTest, DialogsStayWithTheirAdapterAndHaveBaselinesOfTheirOwn) {
    start("1,2", {"set adapter 1 rxPackets 1000", "set adapter 2 rxPackets 2000", "set sig 1 saal 9",
                  "set sig 2 saal 4"});
    openDialog("Statistics ATM Adapter 1");
    const Widget first = dialog;
    raise(window->shell());
    user->clickAt(list().widget(), 20, 30);
    openDialog("Statistics ATM Adapter 2");
    const Widget second = dialog;
    expectLooks("saal=Outgoing resync pending");
    turnTo("aal5Stats");
    press("clear");
    expectLooks("rxPackets=0");
    ctl("set adapter 1 rxPackets 1005; set adapter 2 rxPackets 2005");
    expectLooks("rxPackets=5");
    backTo(first);
    turnTo("signallingStats");
    expectLooks("saal=Data transfer ready");
    turnTo("aal5Stats");
    expectLooks("rxPackets=1005");
    backTo(second);
    expectLooks("rxPackets=5");
    turnTo("lecStats");
    turnTo("aal5Stats");
    expectLooks("rxPackets=5");  // the baseline stays with the page
}

TEST_F(StatisticsTest, ADriverThatGivesNoFurtherChannelIsAskedThroughTheMainWindows) {
    start("1,2", {"set sig 1 saal 9"});
    for (const char* fault : {"open every errno EBUSY", "clear"}) {
        ctl(std::string("fault ") + fault);
        openDialog();
        EXPECT_EQ(look("saal"), "Data transfer ready") << fault;
        press("close");
    }
}

TEST_F(StatisticsTest, WithoutADriverThePagesKeepTheTextsOfTheirLayoutsUntilOneComes) {
    openWindow();
    dlgTitle = std::string(100, 'x');
    openDialog();
    EXPECT_EQ(XUser::titleOf(dialog), "Statistics " + std::string(52, 'x'));
    EXPECT_NE(silence(), "") << "at once";
    const struct {
        const char *page, *looks, *table = nullptr;
        int rows = 0;
    } pages[] = {{"signallingStats", "ilmi=ILMI Static Registration; saal=Outgoing disconnection pending; "
                                     "signalling=Signalling Disconnected; ilmiLamp=greyed"},
                 {"aal5Stats", "rxPackets=0; sonet*title=SONET; losLamp=greyed"},
                 {"lecStats", "mtu=1516; stateLamp=greyed", "lecTable", 20},
                 {"lecStats", "mtu=1516", "lesBusTable", 4},
                 {"ip1577Stats", "rxPackets=0; stateLamp=greyed", "connectionTable", 10},
                 {"lecsStats", "validRequests=0; regLamp=greyed"},
                 {"lesStats", "mtu=1516; elanType=Ethernet; stateLamp=greyed", "clientTable", 4}};
    for (const auto& p : pages) {
        turnTo(p.page);
        press("clear");
        ticks();
        expectLooks(p.looks);
        if (p.table) expectRows(p.table, p.rows);
    }
    turnTo("signallingStats");
    EXPECT_TRUE(greyed("saal"));
    startDriver();
    ctl("set sig 1 saal 9");
    expectLooks("saal=Data transfer ready");
    EXPECT_EQ(silence(), "");
    EXPECT_FALSE(greyed("saal"));
    turnTo("aal5Stats");
    EXPECT_EQ(look("sonet*title"), "OC3c MM");
}

TEST_F(StatisticsTest, ATickWithoutAChangeSendsNothingToTheWindowSystem) {
    start("1,2", {"clock step 100"});
    openDialog();
    for (const char* page :
         {"signallingStats", "aal5Stats", "lecStats", "lesStats", "lecsStats", "ip1577Stats"}) {
        turnTo(page);
        ticks();
        auto* display = static_cast<Display*>(application.display());
        const unsigned long before = NextRequest(display);
        EXPECT_FALSE(asked().empty()) << page;
        EXPECT_EQ(NextRequest(display), before) << page;
        ctl("set adapter 1 txCells 77; set sig 1 saal 3; set lec 1.1 row 1 txPackets 9; set lecs 1 made 9; "
            "set les 1.1 row 1 controlTx 9; set ip 1 row 1 rxPackets 9");
        ticks();
        EXPECT_GT(NextRequest(display), before) << page;
        ctl("unset");
    }
}

// The widest that a driver can say has room, in whatever font the tables are.
TEST_F(StatisticsTest, ColumnsHaveRoomForTheLargestNumbersAndTheLongestTexts) {
    start("1,2", {"rows lec 1.1 2", "rows les 1.1 4", "rows ip 1 6"});
    set("lec 1.1", "state 6; controlDirectVci 65535");
    for (int row = 1; row <= 6; ++row) {
        const std::string large =
            "address 88:88:88:88:88:88:88:88:88:88:88:88:88:88:88:88:88:88:88-88; kind 1; "
            "txPackets 4000000000; rxPackets 4000000000; vci ";
        if (row <= 2) set(fmt::format("lec 1.1 row {}", row), large + "65535; mac 00:00:00:00:00:00");
        if (row <= 4)
            set(fmt::format("les 1.1 row {}", row),
                fmt::format("state {}; controlVci 65535; multicastVci 65535; controlTx 4000000000", row - 1));
        set(fmt::format("ip 1 row {}", row),
            fmt::format("{}-10000; ip 200.200.200.200; state {}", large, row - 1));
    }
    for (const char* font :
         {"", "Liberation Mono:size=8", "Liberation Serif:size=18", "Liberation Sans:bold:size=9"}) {
        tblFontSpec = font;
        openDialog();
        const char* const tables[][2] = {{"signallingStats", "signallingTable"},
                                         {"lecStats", "lesBusTable"},
                                         {"lecStats", "lecTable"},
                                         {"lesStats", "clientTable"},
                                         {"ip1577Stats", "connectionTable"}};
        for (const auto& [page, name] : tables) {
            turnTo(page);
            ticks();
            EXPECT_EQ(XUser::cutTexts(table(name)), nothing) << font << ' ' << name;
        }
        press("close");
    }
}

TEST_F(StatisticsTest, ASilentDriverCostsOneWaitAndTicksDoNotPileUp) {
    start("1,2", {"set sig 1 saal 9"});
    ctl("fault vc.table every silent; fault adapter.suni every silent; fault lec.rows every silent; "
        "fault les.state every silent; fault lecs.state every silent; fault ip.rows every silent");
    const auto seconds = [begin = std::chrono::steady_clock::now()] {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    };
    timerTime = 1000;
    openDialog();
    EXPECT_GT(seconds(), 14);
    EXPECT_LT(seconds(), 29) << "only one page has waited";
    EXPECT_EQ(look("saal"), "Data transfer ready");
    EXPECT_EQ(look("saalLamp"), "greyed");
    EXPECT_NE(silence(), "");
    ctl("set sig 1 saal 3; fault clear; fault sig.link nth 1 late 2500");  // and the first tick waits
    ASSERT_TRUE(user->until([this] { return look("saal") == "Outgoing disconnection pending"; }));
    loggedRequests();
    pass(0.5);
    EXPECT_EQ(requestNames(), nothing) << "the next tick comes a second later";
    timerTime = 60000;
    turnTo("aal5Stats");
    EXPECT_EQ(look("sonet*title"), "OC3c MM") << "at once: it has never been filled";
    turnTo("lecStats");
    EXPECT_EQ(look("stateLamp"), "unlit");
}
