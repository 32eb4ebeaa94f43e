#include <gtest/gtest.h>  // before the window system's macros

#include "app/maindlg.h"
#include "app/routine.h"
#include "driver/dai_api.h"
#include "model/settings.h"
#include "model/tvdatbuf.h"
#include "platform/user.h"
#include "resources/pictures.h"
#include "tests/e2e/xsupport.h"
#include "tests/support/simulator.h"
#include "tests/support/temproot.h"
#include "toolkit/button.h"
#include "toolkit/edit.h"
#include "toolkit/listbox.h"

#include <X11/Intrinsic.h>
#include <chrono>
#include <memory>
#include <optional>

namespace {

// The widget library remembers its first display for good: one for all tests of the process.
struct Desk {
    XServer server;
    zApplication application{"tarvolin", "Tarvolin", {}, fallbackResources};
    bool open = application.openDisplay();
};

Desk& desk() {
    static Desk instance;
    return instance;
}

class MainWindowTest : public testing::Test {
  protected:
    TempRoot root;
    zApplication& application = desk().application;
    std::optional<XUser> user;
    std::optional<Simulator> simulator;
    std::optional<DMainDlg> window;

    void SetUp() override {
        ASSERT_TRUE(desk().open);
        zSetPictures(programPictures());
        platform::pretendSuperUser(true);
        atmDevices = AtmDevices();
        writeSampleConfiguration(root);
        user.emplace(application);
    }

    void TearDown() override {
        window.reset();
        platform::pretendSuperUser({});
    }

    void start(const std::vector<std::string>& options, const std::vector<std::string>& commands = {}) {
        simulator.emplace(options);
        for (const std::string& command : commands) simulator->ctl(command);
        openWindow();
    }

    void openWindow() {
        window.emplace(application, mainLayout);
        ASSERT_TRUE(user->until([&] { return user->shellTitled("Tarvolin v2.0") != nullptr; }));
        user->focus(window->shell());
    }

    zListBox& list() { return window->control<zListBox>(interfaceLB); }

    std::vector<std::string> lines() {
        std::vector<std::string> all;
        for (int i = 0; i < list().count(); ++i) all.push_back(list().line(i));
        return all;
    }

    // Makes the user dismiss every box with Return, noting its title, for as long as the result is held.
    using Titles = std::shared_ptr<std::vector<std::string>>;
    Titles dismissBoxes() {
        auto titles = std::make_shared<std::vector<std::string>>();
        dismissNext(titles, nullptr);
        return titles;
    }

    void dismissNext(std::weak_ptr<std::vector<std::string>> titles, Widget last) {
        const auto box = [this, last] {
            const Widget found = user->widget("messageBox");
            return found && XtParent(found) != last ? XtParent(found) : nullptr;
        };
        user->when([titles, box] { return titles.expired() || box(); },
                   [this, titles, box] {
                       const auto held = titles.lock();
                       if (!held) return;
                       const Widget shell = box();
                       for (const char* title : {"Privilege Error", "Driver Error", "Setup"})
                           if (user->shellTitled(title) == shell) held->push_back(title);
                       dismissNext(titles, shell);
                       user->focus(shell);
                       user->key("Return");
                   });
    }

    // The titles of the boxes that a press brings up.
    std::vector<std::string> boxesOf(const std::function<void()>& press) {
        const Titles titles = dismissBoxes();
        press();
        user->settle();
        return *titles;
    }
};

}  // namespace

TEST_F(MainWindowTest, ListsTheAdaptersOfTheDriverWithTheirAddressesAndItsVersion) {
    start({"--frozen", "--adapters", "1,2,3,4"});
    EXPECT_EQ(lines(), (std::vector<std::string>{
                           "ATM Adapter 1  -  00:a0:3e:00:00:01", "ATM Adapter 2  -  00:a0:3e:00:00:11",
                           "ATM Adapter 3  -  00:a0:3e:00:00:21", "ATM Adapter 4  -  00:a0:3e:00:00:31"}));
    EXPECT_EQ(window->control<zEdit>(driverVersionED).text(), simulator->ctl("get driver revision"));
    EXPECT_EQ(currentAdapter, 0);
    EXPECT_EQ(dlgTitle, lines()[0]);
    EXPECT_STREQ(atmDevices.lec[1][3].mac.GetFMacAddress(), "00:a0:3e:00:00:14");
    EXPECT_STREQ(atmDevices.ip1577[1].mac.GetFMacAddress(), "00:a0:3e:00:00:15");
    EXPECT_EQ(atmDevices.lec[0][0].enabled, 1) << "the parameter file was read, too";

    user->key("Down");
    EXPECT_EQ(currentAdapter, 1);
    EXPECT_EQ(dlgTitle, lines()[1]);
}

TEST_F(MainWindowTest, WorksOnTheAdapterOfTheLineWhereNumbersHaveGaps) {
    start({"--frozen", "--adapters", "1,3"});
    ASSERT_EQ(lines(), (std::vector<std::string>{"ATM Adapter 1  -  00:a0:3e:00:00:01",
                                                 "ATM Adapter 3  -  00:a0:3e:00:00:21"}));
    user->clickAt(list().widget(), 20, 30);
    EXPECT_EQ(currentAdapter, 2);
    EXPECT_EQ(dlgTitle, lines()[1]);
}

TEST_F(MainWindowTest, DerivedAddressesWrapWithinTheLastByte) {
    macAddress address;
    address = "00:a0:3e:00:00:fe";
    deriveMacAddresses(3, address);
    const char* const expected[] = {"00:a0:3e:00:00:fe", "00:a0:3e:00:00:ff", "00:a0:3e:00:00:00",
                                    "00:a0:3e:00:00:01"};
    for (std::size_t k = 0; k < 4; ++k) EXPECT_STREQ(atmDevices.lec[3][k].mac.GetFMacAddress(), expected[k]);
    EXPECT_STREQ(atmDevices.ip1577[3].mac.GetFMacAddress(), "00:a0:3e:00:00:02");
}

TEST_F(MainWindowTest, WithoutADriverSetupWarnsOncePerPressAndTheConfigurationIsThere) {
    openWindow();
    EXPECT_EQ(ioctlDesc, 0);
    EXPECT_TRUE(lines().empty());
    EXPECT_EQ(dlgTitle, "");
    EXPECT_EQ(window->control<zEdit>(driverVersionED).text(), "");
    EXPECT_EQ(atmDevices.lec[0][0].enabled, 1);
    for (int press = 0; press < 2; ++press) {
        const auto boxes = boxesOf([&] { user->click(user->widget("id585")); });
        ASSERT_FALSE(boxes.empty());
        EXPECT_EQ(boxes.front(), "Driver Error");
        EXPECT_EQ(std::count(boxes.begin(), boxes.end(), "Driver Error"), 1);
    }
}

TEST_F(MainWindowTest, OtherUsersGetOnlyThePrivilegeMessageFromSetupAndDoubleClick) {
    platform::pretendSuperUser(false);
    start({"--frozen", "--adapters", "1"});
    const std::string before = root.read("/etc/atm/tvconf");
    const std::vector<std::string> refused{"Privilege Error"};
    EXPECT_EQ(boxesOf([&] { user->click(user->widget("id585")); }), refused);
    EXPECT_EQ(boxesOf([&] { user->clickAt(list().widget(), 20, 10, 2); }), refused);
    EXPECT_EQ(boxesOf([&] { user->key("Return"); }), refused);
    EXPECT_EQ(root.read("/etc/atm/tvconf"), before);
}

TEST_F(MainWindowTest, ADriverThatMisbehavesCostsLinesNotTheWindow) {
    const struct {
        const char* fault;
        std::vector<std::string> lines;
        bool version;
    } cases[] = {
        {"adapter.mac nth 1 resp 5", {"", "ATM Adapter 2  -  00:a0:3e:00:00:11"}, true},
        {"adapter.mac every errno EIO", {"", ""}, true},
        {"driver.boards every dead", {}, true},
        {"driver.boards every short 16", {}, true},
        {"driver.boards every nrow 65535",
         {"ATM Adapter 1  -  00:a0:3e:00:00:01", "ATM Adapter 2  -  00:a0:3e:00:00:11"},
         true},
        {"driver.revision every late 300",
         {"ATM Adapter 1  -  00:a0:3e:00:00:01", "ATM Adapter 2  -  00:a0:3e:00:00:11"},
         true},
        {"driver.revision every malformed lie",
         {"ATM Adapter 1  -  00:a0:3e:00:00:01", "ATM Adapter 2  -  00:a0:3e:00:00:11"},
         false},
        {"driver.revision every hangup", {}, false},
    };
    for (const auto& c : cases) {
        start({"--frozen", "--adapters", "1,2"}, {std::string("fault ") + c.fault});
        EXPECT_EQ(lines(), c.lines) << c.fault;
        EXPECT_EQ(!window->control<zEdit>(driverVersionED).text().empty(), c.version) << c.fault;
        user->key("Down");
        EXPECT_EQ(list().selected(), c.lines.empty() ? -1 : 1) << c.fault;
        window.reset();
        simulator.reset();
    }
}

TEST_F(MainWindowTest, ADriverThatIsSilentIsGivenUpAfterTheStreamsTime) {
    const auto start_ = std::chrono::steady_clock::now();
    start({"--frozen", "--adapters", "1"}, {"fault driver.revision nth 1 silent"});
    const auto waited = std::chrono::steady_clock::now() - start_;
    EXPECT_GE(waited, std::chrono::seconds(15));
    EXPECT_LT(waited, std::chrono::seconds(29));
    EXPECT_EQ(lines().size(), 1U) << "the channel is usable again";
}

TEST_F(MainWindowTest, OptionsAreFoundAnywhereInTheCommandLineInEitherCase) {
    EXPECT_TRUE(holdsOption("-debug -ADV", "-DEBUG"));
    EXPECT_TRUE(holdsOption("x-advy", "-ADV"));
    EXPECT_FALSE(holdsOption("-AD V", "-ADV"));
}

TEST_F(MainWindowTest, CloseAndTheWindowManagersCloseEndTheRun) {
    start({"--frozen", "--adapters", "1"});
    user->click(user->widget("id584"));
    EXPECT_TRUE(application.ending());
    EXPECT_EQ(application.run(), 0);
    window.reset();
    EXPECT_EQ(ioctlDesc, 0);
}
