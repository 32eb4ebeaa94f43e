#include "tests/e2e/programtest.h"

#include "app/routine.h"
#include "driver/channel.h"
#include "tests/support/scripteddriver.h"
#include "toolkit/controls/edit.h"

class MainWindowTest : public ProgramTest {
  protected:
    // The lines of these adapters.
    static Names linesOf(const std::vector<int>& adapters) {
        Names all;
        for (const int n : adapters)
            all.push_back(fmt::format("ATM Adapter {}  -  00:a0:3e:00:00:{}1", n, n - 1));
        return all;
    }
    std::string version() { return window->control<zEdit>(driverVersionED).text(); }
    void expectTheEndBy(const std::function<void()>& action) {
        start("1");
        EXPECT_FALSE(application.ending());
        action();
        user->settle();
        EXPECT_TRUE(application.ending());
        EXPECT_EQ(application.run(), 0);
        window.reset();
        EXPECT_FALSE(ioctlDesc);
    }
};

TEST_F(MainWindowTest, ListsTheAdaptersOfTheDriverWithTheirAddressesAndItsVersion) {
    start("1,2,3,4");
    EXPECT_EQ(lines(), linesOf({1, 2, 3, 4}));
    EXPECT_EQ(version(), simulator->ctl("get driver revision"));
    EXPECT_EQ(currentAdapter, 0);
    EXPECT_EQ(dlgTitle, lines()[0]);
    EXPECT_STREQ(atmDevices.lec[1][3].mac.GetFMacAddress(), "00:a0:3e:00:00:14");
    EXPECT_STREQ(atmDevices.ip1577[1].mac.GetFMacAddress(), "00:a0:3e:00:00:15");
    EXPECT_EQ(atmDevices.lec[0][0].enabled, 1) << "the parameter file was read, too";

    user->key("Down");
    EXPECT_EQ(currentAdapter, 1);
    EXPECT_EQ(dlgTitle, lines()[1]);
}

TEST_F(MainWindowTest, DerivedAddressesWrapWithinTheLastByte) {
    macAddress address;
    address = "00:a0:3e:00:00:fe";
    deriveMacAddresses(3, address, atmDevices);
    const char* const expected[] = {"00:a0:3e:00:00:fe", "00:a0:3e:00:00:ff", "00:a0:3e:00:00:00",
                                    "00:a0:3e:00:00:01"};
    for (std::size_t k = 0; k < 4; ++k) EXPECT_STREQ(atmDevices.lec[3][k].mac.GetFMacAddress(), expected[k]);
    EXPECT_STREQ(atmDevices.ip1577[3].mac.GetFMacAddress(), "00:a0:3e:00:00:02");
}

TEST_F(MainWindowTest, WithoutADriverSetupWarnsOncePerPressAndTheConfigurationIsThere) {
    openWindow();
    EXPECT_FALSE(ioctlDesc);
    EXPECT_TRUE(lines().empty());
    EXPECT_EQ(dlgTitle, "");
    EXPECT_EQ(version(), "");
    EXPECT_EQ(atmDevices.lec[0][0].enabled, 1);
    for (int press = 0; press < 2; ++press) {
        const auto boxes = boxesOf([&] { configure([&] { user->key("Escape"); }); });
        EXPECT_EQ(boxes, Names{"Driver Error"});
    }
}

TEST_F(MainWindowTest, OtherUsersGetOnlyThePrivilegeMessageFromSetupAndDoubleClick) {
    platform::pretendSuperUser(false);
    start("1");
    const std::string before = root.read("/etc/atm/tvconf");
    const Names refused{"Privilege Error"};
    EXPECT_EQ(boxesOf([&] { user->click(user->widget(setupBTN)); }), refused);
    EXPECT_EQ(boxesOf([&] { user->clickAt(list().widget(), 20, 10, 2); }), refused);
    EXPECT_EQ(boxesOf([&] { user->key("Return"); }), refused);
    EXPECT_EQ(root.read("/etc/atm/tvconf"), before);
}

TEST_F(MainWindowTest, ADriverThatMisbehavesCostsLinesNotTheWindow) {
    const Names both = linesOf({1, 2});
    const struct {
        const char* fault;
        Names lines;
        bool version;
    } cases[] = {
        {"adapter.mac nth 1 resp 5", {"", both[1]}, true},    {"driver.boards every dead", {}, true},
        {"driver.boards every nrow 65535", both, true},       {"driver.revision every late 300", both, true},
        {"driver.revision every malformed lie", both, false}, {"driver.revision every hangup", {}, false},
    };
    for (const auto& c : cases) {
        start("1,2", {std::string("fault ") + c.fault});
        EXPECT_EQ(lines(), c.lines) << c.fault;
        EXPECT_EQ(!version().empty(), c.version) << c.fault;
        user->key("Down");
        EXPECT_EQ(list().selected(), c.lines.empty() ? -1 : 1) << c.fault;
    }
}

TEST_F(MainWindowTest, ADriverThatIsSilentIsGivenUpAfterTheStreamsTime) {
    const auto start_ = std::chrono::steady_clock::now();
    start("1", {"fault driver.revision nth 1 silent"});
    const auto waited = std::chrono::steady_clock::now() - start_;
    EXPECT_GE(waited, std::chrono::seconds(15));
    EXPECT_LT(waited, std::chrono::seconds(29));
    EXPECT_EQ(loggedRequests().size(), 2U) << "the opening, and one request: each would be waited for";
    EXPECT_EQ(lines().size(), 0U);
    user->key("F5");
    EXPECT_EQ(lines().size(), 1U);
}

TEST_F(MainWindowTest, IsOnTheScreenAndPaintedBeforeTheDriverIsAsked) {
    for (const bool opens : {true, false}) {
        ScriptedDriver driver;
        int brightness = -1;
        const auto asked = [&] {
            if (window && brightness < 0) brightness = user->darkest(user->widget(closeBTN));
        };
        driver.onOpen = [&] {
            asked();
            return opens;
        };
        driver.otherwise([&](auto, Answer& answer) {
            EXPECT_EQ(window->cursor(), zWatchCursor);
            answer.error(ETIME);
        });
        openWindow();
        EXPECT_GE(brightness, 0);
        EXPECT_LT(brightness, 60) << "its text";
        EXPECT_EQ(driver.opened().size(), 1U);
        EXPECT_EQ(driver.requests().size(), opens ? 1U : 0U);
        EXPECT_EQ(window->cursor(), zArrowCursor);
        window.reset();
    }
}

TEST_F(MainWindowTest, NothingIsDoneOnAListThatTheDriverHasNotBeenAskedFor) {
    startDriver("3");
    for (const int button : {setupBTN, statsBTN}) {
        window.emplace(application, mainLayout);
        const std::string title = button == setupBTN ? "Setup ATM Adapter 3" : "Statistics ATM Adapter 3";
        bool came = false;
        inDialog(title, [&] {
            came = true;
            user->key("Escape");
        });
        user->pressButton(user->widget(button));  // comes right after the first exposure
        EXPECT_TRUE(user->until([&] { return came; })) << title;
        EXPECT_EQ(currentAdapter, 2);
        window.reset();
    }
}

TEST_F(MainWindowTest, F5AsksForTheAdaptersAgain) {
    const auto versionIsGrey = [&] { return !XtIsSensitive(user->widget(driverVersionED)); };
    const struct {
        std::string adapters;  // empty: no driver
        std::vector<int> listed;
        int select, adapter;  // of the list afterwards
    } cases[] = {
        {"1,3", {1, 3}, 0, 0},    {"2,3", {2, 3}, 1, 2}, {"", {2, 3}, 1, 2},
        {"2-4", {2, 3, 4}, 1, 2}, {"4", {4}, 0, 3},
    };
    openWindow();
    EXPECT_TRUE(versionIsGrey());
    std::vector<int> focus{interfaceLB, driverVersionED, closeBTN, globalBTN, interfaceLB};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.adapters);
        const bool there = !c.adapters.empty();
        if (there) startDriver(c.adapters);
        XmProcessTraversal(user->widget(focus.back()), XmTRAVERSE_CURRENT);
        focus.pop_back();
        const std::string before = version();
        user->key("F5");
        EXPECT_EQ(lines(), linesOf(c.listed));
        EXPECT_EQ(list().selected(), c.select);
        EXPECT_EQ(currentAdapter, c.adapter);
        EXPECT_EQ(dlgTitle, list().line(c.select));
        EXPECT_EQ(versionIsGrey(), !there);
        EXPECT_EQ(version(), there ? simulator->ctl("get driver revision") : before);
        if (c.adapters == "1,3") user->clickAt(list().widget(), 20, 30);  // adapter 3
        simulator.reset();
    }
    EXPECT_STREQ(atmDevices.lec[3][3].mac.GetFMacAddress(), "00:a0:3e:00:00:34");
    EXPECT_STREQ(atmDevices.ip1577[3].mac.GetFMacAddress(), "00:a0:3e:00:00:35");
}

TEST_F(MainWindowTest, F5PressedWhileTheDriverIsAskedIsDropped) {
    ScriptedDriver driver;
    driver.otherwise([&](auto, Answer& answer) {
        if (window) user->pressKey("F5");
        answer.error(ETIME);
    });
    openWindow();
    const std::size_t atStart = driver.requests().size();
    user->key("F5");
    EXPECT_EQ(driver.requests().size(), atStart + 1);
    user->key("F5", "Shift_L");
    EXPECT_EQ(driver.requests().size(), atStart + 1);
    window.reset();
}

TEST_F(MainWindowTest, ADriverThatHasComeIsFoundBySetup) {
    openWindow();
    startDriver("2");
    bool came = false;
    const auto boxes = boxesOf([&] {
        configure([&] {
            came = user->shellLike("Setup ATM Adapter 2") != nullptr;
            user->key("Escape");
        });
    });
    EXPECT_TRUE(came);
    EXPECT_EQ(boxes, Names{});
    simulator.reset();
    EXPECT_EQ(boxesOf([&] { configure([&] { user->key("Escape"); }); }), Names{"Driver Error"});
    EXPECT_EQ(currentAdapter, 1) << "the one that was chosen";
}

// In two tests: a run that is at its end stays so.
TEST_F(MainWindowTest, CloseEndsTheRun) {
    expectTheEndBy([&] { user->click(user->widget(closeBTN)); });
}

TEST_F(MainWindowTest, TheWindowManagersCloseEndsTheRun) {
    expectTheEndBy([&] { user->askToClose(window->shell()); });
}
