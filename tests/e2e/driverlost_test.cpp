// Statistics dialogs of a driver that comes and goes, or is slow.
#include <gtest/gtest.h>  // before the window system's macros

#include "platform/device.h"
#include "tests/e2e/statisticstest.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <fmt/format.h>
#include <thread>

namespace {

using Clock = std::chrono::steady_clock;
const std::vector<std::string> twoAdapters{"--frozen", "--adapters", "1,2"};

double secondsSince(Clock::time_point begin) {
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

std::string clockText(std::time_t time) {
    std::array<char, 16> text{};
    std::tm local{};
    std::strftime(text.data(), text.size(), "%H:%M:%S", localtime_r(&time, &local));
    return text.data();
}

// The driver, each request of which takes this long, and something that happens during one of them.
class SlowDevice : public platform::Device {
  public:
    SlowDevice() { platform::setDevice(this); }
    ~SlowDevice() override { platform::setDevice(nullptr); }
    SlowDevice(const SlowDevice&) = delete;
    SlowDevice& operator=(const SlowDevice&) = delete;

    int open(std::string_view path, int oflag) override { return real_.open(path, oflag); }
    int close(int descriptor) override { return real_.close(descriptor); }
    bool hungUp(int descriptor) override { return real_.hungUp(descriptor); }
    int streamsIoctl(int descriptor, int request, platform::strioctl& block) override {
        ++requests;
        std::this_thread::sleep_for(delay);
        if (requests == at) during();
        return real_.streamsIoctl(descriptor, request, block);
    }

    std::chrono::milliseconds delay{0};
    int requests = 0;
    int at = 0;
    std::function<void()> during;

  private:
    platform::Device& real_ = platform::device();
};

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
    constexpr std::size_t windows = 4;
    const std::array<double, 2> pauses{0, 1.2};  // shorter and longer than the period of the refreshes
    timerTime = milliseconds;
    start(twoAdapters, {"set adapter 1 txCells 100"});
    std::array<Widget, windows> dialogs{};
    for (Widget& one : dialogs) {
        openDialog();
        one = dialog;
        turnTo("aal5Stats");
        expectLooks("txCells=100");
    }
    int value = 7;
    for (const double pause : pauses) {
        simulator.reset();
        user->until([] { return false; }, pause);
        simulator.emplace(twoAdapters);
        const auto back = Clock::now();
        simulator->ctl(fmt::format("set adapter 1 txCells {}", ++value));
        std::array<double, windows> after{};
        const auto all = [&] {
            bool found = true;
            for (std::size_t i = 0; i < windows; ++i) {
                dialog = dialogs[i];
                if (after[i] == 0 && look("txCells") == std::to_string(value) && silence().empty())
                    after[i] = secondsSince(back);
                found &= after[i] > 0;
            }
            return found;
        };
        EXPECT_TRUE(user->until(all, 10));
        for (std::size_t i = 0; i < windows; ++i) {
            // Two refreshes, and what the others and the windows need.
            EXPECT_LT(after[i], 2 * milliseconds / 1000.0 + 0.3) << i;
            fmt::print("gone for {} s and refreshed every {} ms: window {} has new values after {:.2f} s\n",
                       pause, milliseconds, i + 1, after[i]);
            dialog = dialogs[i];
            EXPECT_FALSE(greyed("txCells"));
        }
    }
}

TEST_F(DriverLost, ValuesStayGreyedAndALineSaysSinceWhen) {
    start(twoAdapters, {"set adapter 1 rxPackets 5", "set lec 1.1 state 6", "rows lec 1.1 3", "rows ip 1 2"});
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
    const auto each = [&](const auto& check) {
        for (const auto& p : pages) {
            turnTo(p.page);
            for (const std::string& field : split(p.fields)) check(p.page + ("*" + field), field);
        }
    };
    each([&](const std::string& where, const std::string& field) {
        if (XmIsTextField(onPage(field))) texts[where] = look(field);
    });
    EXPECT_EQ(silence(), "");
    EXPECT_FALSE(greyedTable("connectionTable"));

    const std::time_t gone = std::time(nullptr);
    simulator.reset();
    expectSilent();
    const std::string line = silence();
    EXPECT_TRUE(line == "No answer since " + clockText(gone) ||
                line == "No answer since " + clockText(gone + 1))
        << line;
    user->until([] { return false; }, 1.1);
    EXPECT_EQ(silence(), line) << "the time of the first request";
    each([&](const std::string& where, const std::string& field) {
        EXPECT_TRUE(greyed(field)) << where;
        if (XmIsTextField(onPage(field))) {
            EXPECT_EQ(look(field), texts[where]) << where;
        }
    });
    for (const auto& p : pages) {
        if (!p.table) continue;
        turnTo(p.page);
        EXPECT_TRUE(greyedTable(p.table)) << p.table;
        EXPECT_GT(table(p.table).model().rows(), 1) << p.table;
    }

    simulator.emplace(twoAdapters);
    ctl("set sig 1 saal 9");
    expectAnswers();
    timerTime = 60000;  // what is turned to is not left to its timer
    each([&](const std::string& where, const std::string& field) {
        if (XmIsTextField(onPage(field))) {
            EXPECT_FALSE(greyed(field)) << where;
        }
    });
    turnTo("signallingStats");
    EXPECT_FALSE(greyedTable("signallingTable"));
    EXPECT_EQ(look("saalLamp"), "lit");
}

TEST_F(DriverLost, ARefusalIsAnAnswer) {
    startOn("aal5Stats", "set adapter 1 rxPackets 5");
    for (const char* fault : {"any every resp 5", "any every errno EBUSY", "any every dead"}) {
        ctl(std::string("fault ") + fault);
        EXPECT_FALSE(asked().empty());
        EXPECT_EQ(silence(), "") << fault;
        EXPECT_EQ(look("rxPackets"), "5");
        EXPECT_FALSE(greyed("rxPackets"));
        ctl("fault clear");
    }
    for (const char* fault : {"any every malformed lie", "any every hangup"}) {
        ctl(std::string("fault ") + fault);
        expectSilent();
        EXPECT_TRUE(greyed("rxPackets")) << fault;
        ctl("fault clear");
        expectAnswers();
        EXPECT_FALSE(greyed("rxPackets"));
    }
}

TEST_F(DriverLost, ADialogOpenedWithoutADriverFindsTheOneThatComes) {
    openWindow();
    openDialog();
    EXPECT_NE(silence(), "") << "at once";
    expectLooks("saal=Outgoing disconnection pending");
    EXPECT_TRUE(greyed("saal"));
    simulator.emplace(twoAdapters);
    ctl("set sig 1 saal 9");
    expectLooks("saal=Data transfer ready");
    EXPECT_EQ(silence(), "");
    EXPECT_FALSE(greyed("saal"));
    turnTo("aal5Stats");
    EXPECT_EQ(look("sonet*title"), "OC3c MM");
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
    const auto expectAll = [&](const std::string& text, bool clear) {
        for (const auto& c : counters) {
            turnTo(c.page);
            if (clear) press("clear");
            if (c.field) expectLooks(c.field + ("=" + text));
            if (c.table) expectCell(c.table, c.column, 1, text);
        }
    };
    expectAll("5000", false);
    expectAll("0", true);
    simulator.reset();
    simulator.emplace(twoAdapters);
    ctl(after);
    expectAll("60", false);
    expectAll("0", true);
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
    start(twoAdapters);
    for (const auto& c : cases) {
        ctl(c.commands);
        openDialog();
        turnTo(c.page);
        expectRows(c.table, 2);
        EXPECT_NE(look("elanName"), "");
        simulator.reset();
        expectSilent();
        user->clickAt(onPage(c.tabs), 100, 10);
        expectLooks("elanName=");
        expectRows(c.table, 0);
        press("close");
        simulator.emplace(twoAdapters);
    }
}

TEST_F(DriverLost, OpeningOnASlowDriverFillsForASecondAndTheRestWhenItIsTurnedTo) {
    start(twoAdapters, {"set sig 1 saal 9"});
    loggedRequests();
    ctl("fault any every late 400");
    timerTime = 60000;
    const auto begin = Clock::now();
    openDialog();
    EXPECT_GT(secondsSince(begin), 1);
    EXPECT_LT(secondsSince(begin), 2.4) << "a second, the last request, and the windows";
    EXPECT_EQ(look("saal"), "Data transfer ready");
    EXPECT_EQ(requestNames(), (Lines{"adapter.suni", "open", "sig.link", "vc.table"}));
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
    start(twoAdapters, {"set lec 1.1 state 6", "rows lec 1.1 200"});
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
        device.at = 0;
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
