// The whole program on a display of its own, with a simulated driver and a configuration below a root of its
// own.
#pragma once

#include "app/maindlg.h"
#include "model/settings.h"
#include "model/tvdatbuf.h"
#include "platform/user.h"
#include "resources/pictures.h"
#include "tests/e2e/xsupport.h"
#include "tests/support/simulator.h"
#include "tests/support/temproot.h"
#include "toolkit/controls/button.h"
#include "toolkit/controls/listbox.h"
#include "version.h"

#include <Xm/TabBox.h>
#include <Xm/TabStack.h>
#include <Xm/Xm.h>

using Names = std::vector<std::string>;
inline const Names nothing;

// The widget library remembers its first display for good: one for all tests of the process.
struct ProgramDesk {
    static inline const char *screen = "1280x1024x24", *visualClass = "4";  // as XServer takes them
    static inline Names arguments;                                          // of the program
    XServer server{screen, visualClass};
    zApplication application{"tarvolin", "Tarvolin", arguments, fallbackResources};
    bool open = application.openDisplay();

    static ProgramDesk& instance() {
        static ProgramDesk desk;
        return desk;
    }
};

class ProgramTest : public testing::Test {
  protected:
    TempRoot root;
    zApplication& application = ProgramDesk::instance().application;
    std::optional<XUser> user;
    std::optional<Simulator> simulator;
    std::optional<DMainDlg> window;

    void SetUp() override {
        ASSERT_TRUE(ProgramDesk::instance().open);
        zSetPictures(programPictures());
        platform::pretendSuperUser(true);
        atmDevices = AtmDevices();
        timerTime = 1000;
        advSettings = 0;
        tblFontSpec.clear();
        writeSampleConfiguration(root);
        user.emplace(application);
    }

    void TearDown() override {
        window.reset();
        platform::pretendSuperUser({});
    }

    // A driver with these adapters that does what the commands say, and the program.
    void start(const std::string& adapters = "1,2", const Names& commands = {}) {
        window.reset();
        startDriver(adapters);
        for (const std::string& command : commands) simulator->ctl(command);
        openWindow();
    }
    // The same on the sample configuration, whatever was there before.
    void startAfresh(const std::string& adapters = "1,2", const Names& commands = {}) {
        window.reset();
        writeSampleConfiguration(root);
        atmDevices = AtmDevices();
        start(adapters, commands);
    }
    void startDriver(const std::string& adapters = "1,2") {
        simulator.reset();
        simulator.emplace(Names{"--frozen", "--adapters", adapters});
    }

    void openWindow() {
        window.emplace(application, mainLayout);
        ASSERT_TRUE(user->until([&] { return user->shellLike(programTitle) != nullptr; }));
        user->focus(window->shell());
    }

    // Name and unit of each request since the last call.
    std::vector<std::pair<std::string, std::string>> loggedRequests() {
        std::istringstream log(simulator->ctl("log all"));
        simulator->ctl("log clear");
        std::vector<std::pair<std::string, std::string>> requests;
        for (std::string line; std::getline(log, line);) {
            std::istringstream words(line);
            std::string word, name, unit;
            words >> word >> word >> word >> name;
            while (words >> word && word != "Size") unit = word;
            requests.emplace_back(name, unit);
        }
        return requests;
    }

    zListBox& list() { return window->control<zListBox>(interfaceLB); }

    Names lines() {
        Names all;
        for (int i = 0; i < list().count(); ++i) all.push_back(list().line(i));
        return all;
    }

    // Clicks on the tab of this sheet of a notebook.
    void turnTo(Widget book, Widget sheet) {
        ASSERT_TRUE(book && sheet);
        const Widget tabs = XtNameToWidget(book, "tabBox");
        constexpr int row = 15;
        int x = 0;
        while (x < 700 && XmTabStackIndexToWidget(book, XmTabBoxXYToIndex(tabs, x, row)) != sheet) ++x;
        user->clickAt(book, x + 5, row);
        ASSERT_EQ(XmTabStackGetSelectedTab(book), sheet) << XtName(sheet);
    }

    // The titles of the message boxes that come up during an action; each is dismissed with the key.
    Names boxesOf(const std::function<void()>& action, const char* key = "Return") {
        const auto titles = std::make_shared<Names>();
        boxText.clear();
        boxTexts.clear();
        dismissNext(titles, None, key);
        action();
        user->settle();
        return *titles;
    }
    std::string boxText;                          // of the last one, without its line breaks
    std::map<std::string, std::string> boxTexts;  // of all, by title

    // Presses this button of the main window and does the steps in the dialog that comes up; they have to
    // close it.
    void inDialogOf(int button, const std::string& title, const std::function<void()>& steps) {
        bool done = false;
        inDialog(title, [&] {
            steps();
            done = true;
        });
        user->click(window->control<zBitmapButton>(button).widget());
        ASSERT_TRUE(done) << title << "did not come up";
    }
    void configure(const std::function<void()>& session) { inDialogOf(setupBTN, "Setup ", session); }

    // Does the steps as soon as there is a window whose title begins so.
    void inDialog(const std::string& title, const std::function<void()>& steps) {
        const auto shell = [this, title] { return user->shellLike(title); };
        user->when([shell] { return shell() != nullptr; },
                   [this, shell, steps] {
                       user->focus(shell());
                       steps();
                   });
    }

  private:
    // `last` is a window of the server: a new box may have the address of the one that has just been
    // destroyed.
    void dismissNext(std::weak_ptr<Names> titles, Window last, const char* key) {
        const auto box = [this, last] {
            const Widget found = user->widget("messageBox");
            return found && XtWindow(XtParent(found)) != last ? XtParent(found) : nullptr;
        };
        user->when([titles, box] { return titles.expired() || box(); },
                   [this, titles, box, key] {
                       const auto held = titles.lock();
                       if (!held) return;
                       const Widget shell = box();
                       held->push_back(XUser::titleOf(shell));
                       boxText = boxTexts[held->back()] = user->messageOf(shell);
                       dismissNext(titles, XtWindow(shell), key);
                       user->focus(shell);
                       user->key(key);
                   });
    }
};
