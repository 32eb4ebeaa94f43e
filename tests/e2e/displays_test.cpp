// Displays of 24, 16 and 8 bits, one with the user's colours, and one without fonts.
#include "tests/e2e/statisticstest.h"
#include "tests/e2e/tool.h"
#include "tests/support/scripteddriver.h"
#include "ui/config/confids.h"

#include <Xm/List.h>

namespace {

struct Colours {
    const char *geometry, *visualClass;
    int bits;
};

// Before the desk is there.
struct OnColours : testing::WithParamInterface<Colours> {
    OnColours() {
        ProgramDesk::screen = GetParam().geometry;
        ProgramDesk::visualClass = GetParam().visualClass;
    }
};

class Displays : public OnColours, public StatisticsTest {
  protected:
    void SetUp() override {
        StatisticsTest::SetUp();
        ASSERT_EQ(DefaultDepth(display(), 0), GetParam().bits) << "one test a process";
    }
    Display* display() const { return static_cast<Display*>(application.display()); }

    // How many of a hundred pixels of the widget have this colour, as near as five bits come to it.
    double share(Widget widget, unsigned rgb) const {
        int alike = 0, all = 0;
        for (const auto& [colour, count] : user->colours(widget)) {
            bool near = true;
            for (const unsigned shift : {0U, 8U, 16U})
                near &= std::abs(static_cast<int>(colour >> shift & 255U) -
                                 static_cast<int>(rgb >> shift & 255U)) <= 8;
            alike += near ? count : 0;
            all += count;
        }
        return 100.0 * alike / all;
    }
    void expectShare(Widget widget, unsigned rgb, double least, double most) const {
        user->settle();
        const double found = share(widget, rgb);
        EXPECT_TRUE(least <= found && found <= most)
            << XtName(widget) << fmt::format(" #{:06x} ", rgb) << found;
    }
};

}  // namespace

// Colours of the resource file and of the pictures, and texts that are letters instead of dark boxes.
TEST_P(Displays, ColoursAndTextsAreThoseOfTheUsualOne) {
    LogCapture log;
    start("1,2", {"alarm 1 lop on"});
    expectShare(window->shell(), 0xc0c0c0, 85, 95);
    expectShare(list().widget(), 0x9cb8dc, 12, 15);  // the selected line
    expectShare(list().widget(), 0x000000, 3, 7);
    expectShare(user->widget(setupBTN), 0x3c9054, 1.4, 1.6);
    openDialog();
    turnTo("signallingStats");
    user->clickAt(XtNameToWidget(onPage("signallingTable"), "*cells"), 60, 30);
    expectShare(onPage("signallingTable"), 0x9cb8dc, 3, 3.3);  // the selected cell
    expectShare(onPage("signallingTable"), 0x000000, 0.2, 1);
    turnTo("aal5Stats");
    expectLooks("losLamp=lit; lopLamp=unlit");
    expectShare(onPage("losLamp"), 0x50d850, 35, 36);
    expectShare(onPage("lopLamp"), 0x304830, 35, 36);
    EXPECT_EQ(log.take().find("X error"), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Depths, Displays,
                         testing::Values(Colours{"1280x1024x24", "4", 24}, Colours{"1280x1024x16", "4", 16},
                                         Colours{"1280x1024x8", "3", 8}),
                         [](const auto& of) { return fmt::format("{}bits", of.param.bits); });

// A dark scheme of the user's: every text and sign stands out from its ground.
struct DarkResources {  // before the desk is there
    DarkResources() {
        ProgramDesk::arguments = {"-xrm", "*background: #202020", "-xrm", "*foreground: #e0e0e0"};
    }
};
struct DarkColours : DarkResources, StatisticsTest {
    int brightness(Widget widget, const char* resource) const {
        const auto pixel = resourceOf<Pixel>(widget, resource);
        return static_cast<int>((pixel >> 16 & 255) * 3 + (pixel >> 8 & 255) * 6 + (pixel & 255)) / 10;
    }
    // All widgets that show something, from this one down.
    void expectLightOnDark(Widget top) const {
        if (XtIsShell(top) || !XtIsWidget(top)) return;
        EXPECT_GE(brightness(top, XmNforeground), 200) << XtName(top);
        EXPECT_LE(brightness(top, XmNbackground), 80) << XtName(top);
        if (XmIsList(top)) {
            EXPECT_LE(brightness(top, XmNselectColor), 110) << XtName(top) << ", a selected line";
        }
        if (!XtIsComposite(top)) return;
        WidgetList children = nullptr;
        Cardinal count = 0;
        XtVaGetValues(top, XmNchildren, &children, XmNnumChildren, &count, nullptr);
        for (Cardinal i = 0; i < count; ++i) expectLightOnDark(children[i]);
    }
    int count(Widget widget, unsigned colour) const {
        user->settle();
        return user->colours(widget)[colour];
    }
};

TEST_F(DarkColours, ReachEverythingThatIsDrawn) {
    start("1,2");
    expectLightOnDark(user->widget("board"));
    configure([this] {
        const Widget setup = user->shellLike("Setup ");
        ProgramTest::turnTo(user->widget(pagesNB), XtNameToWidget(setup, "*lecPage"));
        expectLightOnDark(XtNameToWidget(setup, "board"));
        const Widget chosen = user->widget(lecsRB), other = user->widget(lesRB);
        EXPECT_GT(count(chosen, 0xe0e0e0), count(other, 0xe0e0e0) + 40) << "the dot";
        user->key("Escape");
    });
    openDialog();
    expectLightOnDark(XtNameToWidget(dialog, "board"));
    EXPECT_GT(count(XtNameToWidget(onPage("signallingTable"), "*cells"), 0xe0e0e0), 20) << "texts in cells";
    EXPECT_EQ(user->colours(onPage("signallingTable")).count(0xffffff), 0U);
}

TEST(WithoutFonts, TheProgramSaysSo) {
    TempRoot root;
    root.write("/fonts.conf",
               fmt::format("<fontconfig><dir>{0}/none</dir><cachedir>{0}/cache</cachedir></fontconfig>",
                           root.path().string()));
    XServer server;
    ::setenv("FONTCONFIG_FILE", root.at("/fonts.conf").c_str(), 1);
    Tool tool(root, {});
    ::unsetenv("FONTCONFIG_FILE");
    EXPECT_EQ(tool.exitStatus(), 1);
    EXPECT_EQ(tool.output(), "tarvolin: Fontconfig finds no fonts\n");
}
