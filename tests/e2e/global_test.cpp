#include "app/routine.h"
#include "tests/e2e/configurationtest.h"
#include "toolkit/display/fonts.h"
#include "ui/global/globlids.h"

// The global settings through their windows.
class GlobalTest : public ConfigurationTest {
  protected:
    enum FontControl { familyLB = 800, sizeLB = 801 };

    void SetUp() override {
        ConfigurationTest::SetUp();
        ApiDbgCB = SignalingDbgCB = IlmiDbgCB = 0;
    }

    // Presses Global and does the steps, which have to close the dialog.
    void global(const std::function<void()>& steps) {
        inDialogOf(globalBTN, "Global Settings", [&] {
            turnTo("applicationPage");
            steps();
        });
    }
    int selectedLine(int id) {  // from 1; 0: none
        int *chosen = nullptr, count = 0;
        XtVaGetValues(named(id), XmNselectedPositions, &chosen, XmNselectedPositionCount, &count, nullptr);
        return count ? chosen[0] : 0;
    }
    std::string traces() {  // as the driver has them: 1 is on
        std::string states;
        std::istringstream dump(simulator->ctl("dump"));
        for (std::string line; std::getline(dump, line);)
            if (line.starts_with("state trace")) states += line.back();
        return states;
    }
    // Clicks on these boxes.
    void switchTraces(const std::vector<int>& boxes) {
        global([&] {
            turnTo("debuggingPage");
            for (const int id : boxes) press(id);
            press(globalOkBTN);
        });
    }
    // Does the steps in the window of the fonts, which have to close it, and closes the settings with OK.
    void font(const std::function<void()>& steps) {
        global([&] {
            inDialog("Table Font", [&] {
                lookAt("fonts");
                steps();
                lookAt("applicationPage");
            });
            press(fontBTN);
            press(globalOkBTN);
        });
    }
};

TEST_F(GlobalTest, OkKeepsTheSettingsForTheRunAndCancelDoesNot) {
    start();
    for (const bool ok : {false, true}) {
        global([&] {
            EXPECT_EQ(shownItem(refreshRateCBO), "1000");
            EXPECT_FALSE(on(advancedCB));
            choose(refreshRateCBO, "Up");
            press(advancedCB);
            turnTo("connectionsPage");
            EXPECT_EQ(text(ptToPtED) + text(ptToMptED) + text(endPtsED), "");
            user->key(ok ? "Return" : "Escape");
        });
        EXPECT_EQ(timerTime, ok ? 500 : 1000);
        EXPECT_EQ(advSettings, ok);
    }
    configure([&] {
        EXPECT_TRUE(user->widget("lesPage"));
        press(cancelBTN);
    });
    advSettings = 0;
    takeOptions("-adv");
    timerTime = 300;  // none of the list
    global([&] {
        EXPECT_EQ(shownItem(refreshRateCBO), "250");
        EXPECT_TRUE(on(advancedCB));
        press(globalOkBTN);
    });
    EXPECT_EQ(timerTime, 300) << "nobody chose another one";
}

TEST_F(GlobalTest, TracesAreSwitchedAllTogetherWhenABoxWasClicked) {
    start();
    told();
    const struct {
        std::vector<int> clicks;
        const char* states;  // of API, signalling and ILMI
        std::size_t requests;
    } cases[] = {
        {{}, "000", 0}, {{ilmiCB, ilmiCB}, "000", 3}, {{apiCB, ilmiCB}, "101", 3}, {{apiCB}, "001", 3}};
    for (const auto& c : cases) {
        switchTraces(c.clicks);
        EXPECT_EQ(told().size(), c.requests) << c.states;
        EXPECT_EQ(traces(), c.states);
    }
    EXPECT_EQ(IlmiDbgCB, 1);

    // One that is refused does not hold the others up, one that is not answered does. Both are named.
    const struct {
        const char* fault;
        std::size_t requests;
        const char* text;
    } faults[] = {{"nth 1 resp 9", 3, "Trace of API: refused (9)."},
                  {"every errno ETIME", 1,
                   "Trace of API: no answer. Whether it is switched is unknown.Trace of Signalling: not "
                   "switched.Trace of ILMI: not switched."}};
    for (const auto& c : faults) {
        simulator->ctl(std::string("fault trace.set ") + c.fault);
        const auto session = [&] { switchTraces({signalingCB}); };
        EXPECT_EQ(boxesOf(session), Names{"Driver Error"});
        EXPECT_EQ(boxText, std::string("The driver did not take everything:") + c.text);
        EXPECT_EQ(told().size(), c.requests);
    }
}

TEST_F(GlobalTest, OthersThanRootAndWithoutADriverNobodySendsAnything) {
    start();
    told();
    const auto session = [&] { switchTraces({apiCB}); };
    platform::pretendSuperUser(false);
    EXPECT_EQ(boxesOf(session), Names{"Privilege Error"});
    EXPECT_EQ(boxText, "Insufficient Privileges.Unable to Modify Signalling Parameters!");
    EXPECT_EQ(ApiDbgCB, 1);
    EXPECT_EQ(told(), Names{});

    window.reset();
    simulator.reset();
    openWindow();
    EXPECT_EQ(boxesOf(session), Names{"Driver Error"});
    EXPECT_EQ(boxText, "There is no driver. No trace has been switched.");
    EXPECT_EQ(ApiDbgCB, 0);

    platform::pretendSuperUser(true);
    for (const char* driver : {"that has come", "that has started again"}) {
        startDriver();
        session();
        EXPECT_EQ(told().size(), 3U) << driver;
    }
}

TEST_F(GlobalTest, ChosenFontsReachTheTablesMadeLater) {
    start();
    int usual = 0;
    configure([&] {
        usual = table().textHeight();
        press(cancelBTN);
    });
    const Names families = zFontFamilies();
    const std::string next = *(std::ranges::find(families, "Liberation Sans") + 1);
    for (const char* way : {"Escape", "Return"}) {
        font([&] {
            pickLine(sizeLB, 8);  // 18 point
            user->key("Tab", "Shift_L");
            user->key("Down");
            user->key(way);
        });
        EXPECT_EQ(tblFontSpec, *way == 'E' ? "" : next + ":size=18");
    }
    configure([&] {
        EXPECT_GT(table().textHeight(), usual + 5);
        press(cancelBTN);
    });
    // What is in force stands in the lists, and OK without a choice leaves the setting alone.
    const struct {
        const char* font;
        int size;  // its line; 0: none
    } cases[] = {{"Liberation Sans:size=18", 8},
                 {"", 3},
                 {"no such family:size=12", 5},
                 {"Liberation Serif:size=10.5", 0}};
    for (const auto& c : cases) {
        tblFontSpec = c.font;
        font([&] {
            EXPECT_EQ(selectedLine(sizeLB), c.size) << c.font;
            EXPECT_GT(selectedLine(familyLB), 0) << c.font;
            user->key("Return");
        });
        EXPECT_EQ(tblFontSpec, c.font);
    }
}
