// Displays of 24, 16 and 8 bits, and one without fonts.
#include <gtest/gtest.h>  // before the window system's macros

#include "tests/e2e/statisticstest.h"
#include "tests/e2e/tool.h"
#include "tests/support/scripteddriver.h"

#include <cstdlib>
#include <fmt/format.h>

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
    expectShare(onPage("losLamp"), 0x50d850, 17, 18);
    expectShare(onPage("lopLamp"), 0x304830, 17, 18);
    EXPECT_EQ(log.take().find("X error"), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Depths, Displays,
                         testing::Values(Colours{"1280x1024x24", "4", 24}, Colours{"1280x1024x16", "4", 16},
                                         Colours{"1280x1024x8", "3", 8}),
                         [](const auto& of) { return fmt::format("{}bits", of.param.bits); });

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
