#include <gtest/gtest.h>  // before the window system's macros

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
        bool done = false;
        inDialog("Global Settings", [&] {
            turnTo("applicationPage");
            steps();
            done = true;
        });
        user->click(window->control<zBitmapButton>(globalBTN).widget());
        ASSERT_TRUE(done);
    }
    int selectedLine(int id) {  // from 1; 0: none
        int *chosen = nullptr, count = 0;
        const bool any = XmListGetSelectedPos(named(id), &chosen, &count);
        const int line = any && count ? chosen[0] : 0;
        if (any) XtFree(reinterpret_cast<char*>(chosen));
        return line;
    }
    std::string traces() {
        std::string lines;
        std::istringstream dump(simulator->ctl("dump"));
        for (std::string line; std::getline(dump, line);)
            if (line.find("trace") != line.npos) lines += line + '\n';
        return lines;
    }
};

TEST_F(GlobalTest, OkKeepsTheSettingsForTheRunAndCancelDoesNot) {
    start({"--frozen", "--adapters", "1,2"});
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
    const char* requests[] = {
        "22 00 03 00 00 00 4c 00 1b 00 00 00 00 00 ad de 00 00 00 00 00 00 00 00 00 01 ",
        "22 00 03 00 00 00 4c 00 1b 00 00 00 00 00 ad de 00 00 00 00 00 00 00 00 00 02 ",
        "22 00 03 00 00 00 4c 00 1b 00 00 00 00 00 ad de 00 00 00 00 00 00 00 00 00 04 "};
    start({"--frozen", "--adapters", "1,2"});
    const std::string off = traces();
    told();
    const struct {
        const char* name;
        std::vector<int> clicks;
        const char* states[3];  // in the requests; none are sent without
    } cases[] = {{"nothing", {}, {}},
                 {"ILMI, and back", {ilmiCB, ilmiCB}, {"00", "00", "00"}},
                 {"two on", {apiCB, ilmiCB}, {"01", "00", "01"}},
                 {"one off", {apiCB}, {"00", "00", "01"}}};
    for (const auto& c : cases) {
        global([&] {
            turnTo("debuggingPage");
            for (const int id : c.clicks) press(id);
            press(globalOkBTN);
        });
        const std::string log = simulator->ctl("log hex all");
        std::size_t at = 0;
        for (int i = 0; i < 3 && c.states[0]; ++i) {
            at = log.find(std::string(requests[i]) + c.states[i], at);
            EXPECT_NE(at, std::string::npos) << c.name << ' ' << i << '\n' << log;
        }
        EXPECT_EQ(told().size(), c.states[0] ? 3U : 0U) << c.name;
    }
    EXPECT_EQ(differences(off, traces()).size(), 2U);
    EXPECT_EQ(IlmiDbgCB, 1);

    simulator->ctl("fault trace.set nth 1 resp 9");
    global([&] {
        turnTo("debuggingPage");
        EXPECT_TRUE(on(ilmiCB));
        press(signalingCB);
        press(globalOkBTN);
    });
    EXPECT_EQ(told().size(), 3U) << "a refused one does not hold the others up";

    simulator->ctl("fault trace.set every silent");
    global([&] {
        turnTo("debuggingPage");
        press(signalingCB);
        press(globalOkBTN);
    });
    EXPECT_EQ(told().size(), 1U) << "one that is not answered does";
}

TEST_F(GlobalTest, OthersThanRootAndARunWithoutADriverSendNothing) {
    start({"--frozen", "--adapters", "1,2"});
    told();
    const auto session = [&] {
        global([&] {
            turnTo("debuggingPage");
            press(apiCB);
            press(globalOkBTN);
        });
    };
    platform::pretendSuperUser(false);
    EXPECT_EQ(boxesOf(session), Names{"Privilege Error"});
    EXPECT_EQ(boxText, "Insufficient Privileges.Unable to Modify Signalling Parameters!");
    EXPECT_EQ(ApiDbgCB, 1);
    EXPECT_EQ(told(), Names{});

    window.reset();
    simulator.reset();
    openWindow();
    EXPECT_EQ(boxesOf(session), Names{});
    EXPECT_EQ(ApiDbgCB, 0);
}

TEST_F(GlobalTest, ChosenFontsReachTheTablesMadeLater) {
    start({"--frozen", "--adapters", "1,2"});
    int usual = 0;
    configure([&] {
        usual = table().textHeight();
        press(cancelBTN);
    });
    const std::vector<std::string> families = zFontFamilies();
    const std::string next = *(std::ranges::find(families, "Liberation Sans") + 1);
    for (const char* way : {"Escape", "Return"}) {
        global([&] {
            inDialog("Table Font", [&] {
                lookAt("fonts");
                pickLine(sizeLB, 8);  // 18 point
                user->key("Tab", "Shift_L");
                user->key("Down");
                user->key(way);
                lookAt("applicationPage");
            });
            press(fontBTN);
            press(globalOkBTN);
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
        global([&] {
            inDialog("Table Font", [&] {
                lookAt("fonts");
                EXPECT_EQ(selectedLine(sizeLB), c.size) << c.font;
                EXPECT_GT(selectedLine(familyLB), 0) << c.font;
                user->key("Return");
                lookAt("applicationPage");
            });
            press(fontBTN);
            press(globalOkBTN);
        });
        EXPECT_EQ(tblFontSpec, c.font);
    }
}
