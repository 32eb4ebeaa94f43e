// Statistics dialogs of a driver that comes and goes, or is slow.
#include "tests/e2e/slowdevice.h"
#include "tests/e2e/statisticstest.h"

#include <cstdio>
#include <ctime>

namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point begin) {
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

std::string clockText(std::time_t time) {
    std::array<char, 16> text{};
    std::tm local{};
    std::strftime(text.data(), text.size(), "%H:%M:%S", localtime_r(&time, &local));
    return text.data();
}

class DriverLost : public StatisticsTest {
  protected:
    void expectSilent() {
        EXPECT_TRUE(user->until([this] { return !silence().empty(); }, 2));
    }
    void expectAnswers() {
        EXPECT_TRUE(user->until([this] { return silence().empty(); }, 2));
    }
};

}  // namespace

TEST_F(DriverLost, ARestartedDriverIsFoundByEveryOpenWindow) {
    constexpr int milliseconds = 500;
    std::array<Widget, 4> dialogs{};
    timerTime = milliseconds;
    start("1,2", {"set adapter 1 txCells 100"});
    for (Widget& one : dialogs) {
        openDialog();
        one = dialog;
        turnTo("aal5Stats");
        expectLooks("txCells=100");
    }
    for (const double pause : {0.0, 1.2}) {  // shorter and longer than the period of the refreshes
        simulator.reset();
        pass(pause);
        startDriver();
        const auto back = Clock::now();
        const std::string value = pause > 0 ? "8" : "7";
        simulator->ctl("set adapter 1 txCells " + value);
        for (const Widget one : dialogs) {
            dialog = one;
            EXPECT_TRUE(user->until([&] { return look("txCells") == value && silence().empty(); }));
            EXPECT_FALSE(greyed("txCells"));
        }
        const double after = secondsSince(back);
        // Two refreshes, and what the windows need.
        EXPECT_LT(after, 2 * milliseconds / 1000.0 + 0.3);
        fmt::print("gone for {} s and refreshed every {} ms: all windows have new values after {:.2f} s\n",
                   pause, milliseconds, after);
    }
}

TEST_F(DriverLost, ValuesStayGreyedAndALineSaysSinceWhen) {
    start("1,2", {"set adapter 1 rxPackets 5", "set lec 1.1 state 6", "rows lec 1.1 3", "rows ip 1 2"});
    openDialog();
    const struct {
        const char *page, *fields, *table;
    } pages[] = {{"signallingStats", "ilmi; saal; networkPrefix; ilmiLamp", "signallingTable"},
                 {"aal5Stats", "rxPackets; rxCellErrors; losLamp", nullptr},
                 {"lecStats", "elanName; mtu; stateLamp", "lecTable"},
                 {"lecStats", "macAddress", "lesBusTable"},
                 {"lesStats", "elanName; busEsiSelector; stateLamp", nullptr},
                 {"lecsStats", "validRequests; regLamp", nullptr},
                 {"ip1577Stats", "rxPackets; txDropped", "connectionTable"}};
    std::map<std::string, std::string> texts;
    const auto each = [&](const std::function<void(std::string, const std::string&, bool)>& check) {
        for (const auto& p : pages) {
            turnTo(p.page);
            for (const std::string& field : split(p.fields))
                check(p.page + ("*" + field), field, XmIsTextField(onPage(field)));
        }
    };
    each([&](auto where, auto& field, bool text) { texts[where] = text ? look(field) : ""; });
    EXPECT_EQ(silence(), "");
    EXPECT_FALSE(greyedTable("connectionTable"));

    const std::time_t gone = std::time(nullptr);
    simulator.reset();
    expectSilent();
    const std::string line = silence();
    EXPECT_TRUE(line == "No answer since " + clockText(gone) ||
                line == "No answer since " + clockText(gone + 1))
        << line;
    pass(1.1);
    EXPECT_EQ(silence(), line) << "the time of the first request";
    each([&](auto where, auto& field, bool text) {
        EXPECT_TRUE(greyed(field)) << where;
        EXPECT_EQ(text ? look(field) : "", texts[where]) << where;
    });
    for (const auto& p : pages) {
        if (!p.table) continue;
        turnTo(p.page);
        EXPECT_TRUE(greyedTable(p.table)) << p.table;
        EXPECT_GT(table(p.table).model().rows(), 1) << p.table;
    }

    startDriver();
    ctl("set sig 1 saal 9");
    expectAnswers();
    timerTime = 60000;  // what is turned to is not left to its timer
    each([&](auto where, auto& field, bool text) { EXPECT_FALSE(text && greyed(field)) << where; });
    turnTo("signallingStats");
    EXPECT_FALSE(greyedTable("signallingTable"));
    EXPECT_EQ(look("saalLamp"), "lit");
}

TEST_F(DriverLost, ARefusalIsAnAnswer) {
    startOn("aal5Stats", "set adapter 1 rxPackets 5");
    const struct {
        const char* fault;
        bool answered;
    } cases[] = {
        {"resp 5", true}, {"errno EBUSY", true}, {"dead", true}, {"malformed lie", false}, {"hangup", false}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.fault);
        ctl(std::string("fault any every ") + c.fault);
        if (c.answered) {
            EXPECT_FALSE(asked().empty());
        } else
            expectSilent();
        EXPECT_EQ(silence().empty(), c.answered);
        EXPECT_EQ(greyed("rxPackets"), !c.answered);
        EXPECT_EQ(look("rxPackets"), "5");
        ctl("fault clear");
        expectAnswers();
        EXPECT_FALSE(greyed("rxPackets"));
    }
}

// The driver that has come does not know the adapter.
TEST_F(DriverLost, ADriverThatRefusesLeavesOldValuesGreyed) {
    startOn("aal5Stats", "set adapter 1 rxPackets 5");
    turnTo("signallingStats");
    simulator.reset();
    expectSilent();
    startDriver("2");
    expectAnswers();
    EXPECT_TRUE(greyed("ilmi"));
    EXPECT_TRUE(greyedTable("signallingTable"));
    turnTo("aal5Stats");
    EXPECT_TRUE(greyed("rxPackets"));
    EXPECT_EQ(look("rxPackets"), "5");
    startDriver();
    EXPECT_TRUE(user->until([this] { return !greyed("rxPackets"); }, 2));
}

// The main window finds the new driver, over the channel that the dialog uses, too.
TEST_F(DriverLost, ADriverThatOthersHaveLostLeavesOldValuesGreyed) {
    start("1,2", {"set adapter 1 rxPackets 5"});
    ctl("fault open every errno EBUSY");
    openDialog();
    timerTime = 60000;
    turnTo("aal5Stats");
    startDriver("2");
    raise(window->shell());
    user->key("F5");
    raise(dialog);
    press("clear");
    EXPECT_EQ(silence(), "");
    EXPECT_EQ(look("rxPackets"), "5");
    EXPECT_TRUE(greyed("rxPackets"));
}

// What the new driver tells is shown, and nothing of the one before beside it.
TEST_F(DriverLost, OldValuesAreNotShownBesideNewOnes) {
    startOn("aal5Stats", "set adapter 1 rxPackets 5; set lec 1.1 state 6; set lec 1.1 controlDirectVci 16; "
                         "set lec 1.1 controlDistributeVci 5; set vc 1 row 1 vci 16; set vc 1 row 2 vci 5; "
                         "set vc 1 row 1 rxPackets 5000; set vc 1 row 2 rxPackets 5000");
    expectLooks("losLamp=lit");
    turnTo("signallingStats");
    expectCell("signallingTable", 2, 2, "5000");
    turnTo("lecStats");
    expectCell("lesBusTable", 3, 2, "5000");
    timerTime = 60000;  // from now on a page is refreshed when it is turned to, and at the tick that runs
    turnTo("aal5Stats");
    turnTo("lecStats");
    simulator.reset();
    press("clear");
    startDriver();
    ctl("set adapter 1 rxPackets 7; set lec 1.1 state 6; set lec 1.1 controlDirectVci 16; "
        "set lec 1.1 controlDistributeVci 0; fault adapter.suni every resp 5; fault vc.table every resp 5");
    turnTo("signallingStats");
    EXPECT_TRUE(greyedTable("signallingTable"));
    turnTo("aal5Stats");
    EXPECT_FALSE(greyed("rxPackets"));
    expectLooks("rxPackets=7; losLamp=greyed");
    turnTo("lecStats");
    EXPECT_FALSE(greyed("mtu"));
    expectCell("lesBusTable", 1, 1, "  0/  16");
    for (const auto& [column, row] : {std::pair(3, 1), {1, 2}, {3, 2}})
        expectCell("lesBusTable", column, row, "");
    ctl("fault clear; rows vc 1 3; set vc 1 row 1 vci 16; set vc 1 row 1 rxPackets 60; set vc 1 row 2 vci 6");
    turnTo("signallingStats");
    EXPECT_FALSE(greyedTable("signallingTable"));
    expectCell("signallingTable", 2, 1, "60");
    expectCell("signallingTable", 2, 2, "");
}

// The driver's counters start from 0 with it.
TEST_F(DriverLost, WhatWasClearedIsForgottenWithTheDriver) {
    const std::string before =
        "set adapter 1 txCells 5000; set sig 1 saal 9; rows ip 1 2; set ip 1 txDrop1 5000; "
        "set lecs 1 made 5000; set ip 1 row 1 txPackets 5000; set lec 1.1 state 6; rows lec 1.1 2; "
        "set lec 1.1 row 1 txPackets 5000; set vc 1 row 1 txPackets 5000; set vc 1 row 1 vci 16; set lec 1.1 "
        "controlDirectVci 16; "
        "rows les 1.1 2; set les 1.1 state 1; set les 1.1 row 1 controlTx 5000";
    std::string after = before;
    for (std::size_t at; (at = after.find("5000")) != std::string::npos;) after.replace(at, 4, "60");
    startOn("signallingStats", before);
    const struct {
        const char *page, *field, *table;
        int column;
    } counters[] = {{"aal5Stats", "txCells", nullptr, 0},
                    {"lecsStats", "connectionsMade", nullptr, 0},
                    {"ip1577Stats", "txDropped", nullptr, 0},
                    {"ip1577Stats", nullptr, "connectionTable", 4},
                    {"signallingStats", nullptr, "signallingTable", 3},
                    {"lecStats", nullptr, "lesBusTable", 2},
                    {"lecStats", nullptr, "lecTable", 3},
                    {"lesStats", nullptr, "clientTable", 4}};
    enum { look, clear, undo };
    const auto expectAll = [&](const std::string& text, int act) {
        for (const auto& c : counters) {
            turnTo(c.page);
            if (act == clear) press("clear");
            if (act == undo) undoClear();
            if (c.field) expectLooks(c.field + ("=" + text));
            if (c.table) expectCell(c.table, c.column, 1, text);
        }
    };
    expectAll("5000", look);
    expectAll("0", clear);
    expectAll("5000", undo);
    expectAll("0", clear);
    startDriver();
    ctl(after);
    expectAll("60", look);
    expectAll("60", undo);
    expectAll("0", clear);
}

TEST_F(DriverLost, RowsOutOfSightAreThereWhileTheDriverIsNot) {
    startOn("lesStats", "set les 1.1 state 1; rows les 1.1 300");
    expectRows("clientTable", 300);
    ctl("fault les.table nth 3 hangup; fault open every hangup");
    expectSilent();
    EXPECT_EQ(cell("clientTable", 1, 300).size(), 17U);
    EXPECT_NE(cell("clientTable", 1, 200), cell("clientTable", 1, 201));
}

TEST_F(DriverLost, AnotherClientOrServerShowsNothingOfTheOneBefore) {
    const struct {
        const char *page, *tabs, *table, *commands;
    } cases[] = {{"lecStats", "lecTabs", "lecTable", "set lec 1.1 state 6; rows lec 1.1 2"},
                 {"lesStats", "lesTabs", "clientTable", "set les 1.1 state 1; rows les 1.1 2"}};
    start();
    for (const auto& c : cases) {
        ctl(c.commands);
        openDialog();
        turnTo(c.page);
        expectRows(c.table, 2);
        EXPECT_NE(look("elanName"), "");
        simulator.reset();
        expectSilent();
        show(c.tabs, 2);
        expectLooks("elanName=");
        expectRows(c.table, 0);
        press("close");
        startDriver();
    }
}

TEST_F(DriverLost, OpeningOnASlowDriverFillsForASecondAndTheRestWhenItIsTurnedTo) {
    start("1,2", {"set sig 1 saal 9"});
    loggedRequests();
    ctl("fault any every late 400");
    timerTime = 60000;
    const auto begin = Clock::now();
    openDialog();
    EXPECT_GT(secondsSince(begin), 1);
    EXPECT_LT(secondsSince(begin), 2.4) << "a second, the last request, and the windows";
    EXPECT_EQ(look("saal"), "Data transfer ready");
    EXPECT_EQ(requestNames(), (Names{"adapter.suni", "open", "sig.link", "vc.table"}));
    EXPECT_EQ(look("saalLamp"), "lit");
    ctl("fault clear");
    for (const char* page : {"aal5Stats", "lecStats", "ip1577Stats", "lesStats", "lecsStats"}) {
        loggedRequests();
        turnTo(page);
        EXPECT_FALSE(requestNames().empty()) << page;
    }
    loggedRequests();
    turnTo("aal5Stats");
    EXPECT_EQ(requestNames(), nothing) << "it has been filled";
}

// Something is pressed during the fifth request of a refresh, in the middle of a table that takes sixteen.
TEST_F(DriverLost, CloseAndTabsWaitForTheRunningRequestOnly) {
    SlowDevice device;
    start("1,2", {"set lec 1.1 state 6", "rows lec 1.1 200"});
    const auto closed = [&] { return !user->shellLike("Statistics "); };
    const struct {
        const char* what;
        std::function<void()> press;
        std::function<bool()> served;
    } cases[] = {
        {"tab", [&] { user->pressButton(named("pages"), 45, 15); },
         [&] { return XmTabStackGetSelectedTab(named("pages")) == named("signallingStats"); }},
        {"window manager", [&] { user->askToClose(dialog); }, closed},
        {"Close", [&] { user->pressButton(named("close")); }, closed},
        {"Escape", [&] { user->pressKey("Escape"); }, closed},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        timerTime = 200;
        openDialog();
        turnTo("lecStats");
        expectRows("lecTable", 200);
        user->until([&] { return device.requests == 0; }, 0.2);
        device.delay = std::chrono::milliseconds(60);
        device.requests = 0;
        device.at = 5;
        device.during = c.press;
        EXPECT_TRUE(user->until(c.served, 3));
        EXPECT_EQ(device.requests, 5);
        device.during = nullptr;
        device.delay = std::chrono::milliseconds(0);
        if (!closed()) press("close");
    }
}

// A press of Clear is carried out in the end.
TEST_F(DriverLost, AClearThatIsInterruptedGoesOn) {
    SlowDevice device;
    startOn("ip1577Stats", "set ip 1 txDrop1 5000; rows ip 1 2; set ip 1 row 1 txPackets 5000");
    expectCell("connectionTable", 4, 1, "5000");
    timerTime = 100;
    turnTo("aal5Stats");
    turnTo("ip1577Stats");
    device.delay = std::chrono::milliseconds(120);
    device.at = device.requests + 2;
    device.during = [&] { user->pressKey("Shift_L"); };
    press("clear");
    device.delay = std::chrono::milliseconds(0);
    expectLooks("txDropped=0");
    expectCell("connectionTable", 4, 1, "0");
}
