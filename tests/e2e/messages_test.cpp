// What the line below the buttons says, and what windows look like while the driver is slow.
#include "tests/e2e/configurationtest.h"
#include "tests/e2e/slowdevice.h"

class Messages : public ConfigurationTest {
  protected:
    std::string line(const std::string& dialog = "setup") {
        return XUser::labelOf(XtNameToWidget(user->widget(dialog), "*message"));
    }
    // A window over everything comes and goes: the server has painted the background where it was.
    void uncover() {
        Display* other = XOpenDisplay(nullptr);
        XSetWindowAttributes attributes{};
        attributes.override_redirect = True;
        const Window cover =
            XCreateWindow(other, DefaultRootWindow(other), 0, 0, 1280, 1024, 0, CopyFromParent, InputOutput,
                          CopyFromParent, CWOverrideRedirect, &attributes);
        XMapRaised(other, cover);
        XSync(other, False);
        XDestroyWindow(other, cover);
        XCloseDisplay(other);
    }
    bool painted(Widget control) { return user->darkest(control) < 80; }
};

TEST_F(Messages, AdviseWhileAValueIsTyped) {
    start("1");
    advSettings = 1;
    struct Case {
        const char* page;
        int field;
        const char *typed, *line;
    };
    const Case cases[] = {
        {"lecPage", l3MtuED, "0", "L3 MTU 0: no packet fits into it"},
        {"lecPage", l3MtuED, "1500", ""},
        {"lecPage", elanNameED, "", "This is an enabled client without an ELAN name"},
        {"ip1577Page", ipED, "300.1.1.1", "300.1.1.1 is no address"},
        {"ip1577Page", subnetMaskED, "255.0.255.0", "255.0.255.0 is no subnet mask: it has holes"},
        {"ip1577Page", subnetMaskED, "0.0.0.0",
         "The mask 0.0.0.0 puts every address into the client's network"},
    };
    configure([&] {
        press(elanNameED);
        user->key("space");
        EXPECT_TRUE(line().starts_with("A blank cannot stand here: ")) << line();
        for (const Case& c : cases) {
            SCOPED_TRACE(c.typed);
            turnTo(c.page);
            enter(c.field, c.typed);
            EXPECT_EQ(line(), c.line);
        }
        // Elsewhere the page's most serious one is said, and on another page nothing of it.
        user->key("Tab");
        EXPECT_EQ(line(), "300.1.1.1 is no address");
        turnTo("lecsPage");
        EXPECT_EQ(line(), "");
        turnTo("ip1577Page");
        press(enableCB);
        EXPECT_EQ(line(), "") << "of what is off nothing is said";
        press(enableCB);
        press(okBTN);
    });
    EXPECT_EQ(atmDevices.ip1577[0].ip.str(), "300.1.1.1") << "it advises and does not block";
}

TEST_F(Messages, SayWhatAGreyedControlWaitsFor) {
    start("1");
    configure([&] {
        press(pvcOnlyCB);
        for (const int greyed : {elanNameED, elanNameLBL, elanMtuCBO, lesRB, networkPrefixED}) {
            user->pointAt(named(greyed));
            EXPECT_EQ(line(), "Switch off PVC Only") << greyed;
            user->pointAt(named(enableCB));
            EXPECT_EQ(line(), "") << greyed;
        }
        press(enableCB);
        user->pointAt(named(elanNameED));
        EXPECT_EQ(line(), "Switch on Enable");
        press(enableCB);
        press(pvcOnlyCB);
        user->pointAt(named(elanNameED));
        EXPECT_EQ(line(), "");
        press(cancelBTN);
    });
}

TEST_F(Messages, AdviseInTheDialogOfAPvc) {
    bridgedPvcXferBuffer = {};
    start("1");
    configure([&] {
        inSubDialog(addBTN, "lecPvc", [&] {
            EXPECT_EQ(line("lecPvc"), "The PVC leads to a MAC address of zeros");
            press(broadcastCB);
            EXPECT_EQ(line("lecPvc"), "VCI 0 is reserved, as all up to 31 are") << "the more serious";
            enter(pvcVciED, "5");
            EXPECT_EQ(line("lecPvc"), "VCI 5 belongs to signalling");
            enter(pvcVciED, "101");
            EXPECT_EQ(line("lecPvc"), "VCI 101 is used by LEC 1 already");
            enter(pvcMacED, "010000000001");
            EXPECT_EQ(line("lecPvc"), "01:00:00:00:00:01 is the address of a group");
            press(subCancelBTN);
        });
        selectRow(1);
        inSubDialog(modifyBTN, "lecPvc", [&] {
            EXPECT_EQ(line("lecPvc"), "") << "a PVC may keep its own VCI";
            press(subCancelBTN);
        });
        turnTo("ip1577Page");
        inSubDialog(addBTN, "ipPvc", [&] {
            enter(pvcVciED, "200");
            enter(pvcIpED, "300.1.1.1");
            EXPECT_EQ(line("ipPvc"), "300.1.1.1 is no address");
            press(subCancelBTN);
        });
        press(cancelBTN);
    });
}

TEST_F(Messages, SayWhatASlowDriverIsToldToDo) {
    SlowDevice driver;
    start("1");
    Names said;
    std::vector<bool> whole;
    configure([&] {
        for (const int client : {1, 2}) {
            tab(client);
            enter(elanNameED, "other");
        }
        const Widget setup = user->shellLike("Setup "), name = named(elanNameLBL);
        driver.delay = std::chrono::milliseconds(300);
        driver.during = [&, setup, name] {
            // What was uncovered during the request before is painted again.
            whole.push_back(painted(name));
            said.push_back(line());
            EXPECT_EQ(window->cursor(), zWatchCursor);
            EXPECT_EQ(user->shellLike("Setup "), setup);
            uncover();
        };
        press(okBTN);
    });
    driver.during = nullptr;
    const Names words{"", "", "Adding PVC 0 / 101 to LEC 1 …", "Restarting LEC 2 …"};
    EXPECT_EQ(said, words);
    EXPECT_EQ(whole, std::vector<bool>(words.size(), true));
    EXPECT_FALSE(user->shellLike("Setup "));
}

TEST_F(Messages, SayWhatTheFirstRequestIsAboutWhileItWaits) {
    SlowDevice driver;
    start("1");
    Names said;
    configure([&] {
        enter(l3MtuED, "0");
        EXPECT_TRUE(line().starts_with("L3 MTU 0")) << line();
        simulator->ctl("fault lec.start every late 900");
        driver.after = [&] { said.push_back(line()); };
        press(okBTN);
    });
    driver.after = nullptr;
    ASSERT_FALSE(said.empty());
    EXPECT_EQ(said.front(), "Restarting LEC 1 …");
}

TEST_F(Messages, TheDialogOfAPvcStaysUntilTheDriverHasAnswered) {
    bridgedPvcXferBuffer = {};
    SlowDevice driver;
    start("1");
    int requests = 0;
    configure([&] {
        inSubDialog(addBTN, "lecPvc", [&] {
            enter(pvcVciED, "204");
            driver.during = [&] {
                ++requests;
                EXPECT_TRUE(user->widget("lecPvc"));
            };
            press(subOkBTN);
        });
        driver.during = nullptr;
        EXPECT_FALSE(user->widget("lecPvc"));
        press(cancelBTN);
    });
    EXPECT_EQ(requests, 1);
}
