// Screens, fonts and windows of other sizes than the usual ones.
#include "tests/e2e/outsideuser.h"
#include "tests/e2e/statisticstest.h"
#include "ui/config/confids.h"

namespace {

constexpr int frame = 24;  // what a window manager needs

struct Sizes : StatisticsTest {
    Display* display() const { return static_cast<Display*>(application.display()); }
};

}  // namespace

// The main window's width tells the font; its largest dialog comes up in any.
TEST(Fonts, FitTheScreenUnlessTheUserHasChosenThem) {
    const struct {
        int width, height;
        const char* resource;
        int mainWidth, mainHeight;
        bool fits = true;
        std::string says = "";
    } rows[] = {
        {640, 480, "", 480, 200},
        {800, 600, "", 548, 246},
        {1024, 768, "", 685, 292},
        {640, 480, "Tarvolin*fontSize: 12", 685, 292, false},
        {800, 600, "Tarvolin*plain*fontSize: 9", 685, 292},
        {1024, 768, "Tarvolin*fontSize: 7", 411, 169},
        {1024, 768, "Tarvolin*fontSize: 13", 754, 308},
        {1024, 768, "Tarvolin*fontSize: 40", 2261, 938, false},
        {640, 480, "Tarvolin*fontSize: 3", 480, 200, true,
         "tarvolin: font size \"3\" ignored: 4 to 72 points\n"},
        {640, 480, "Tarvolin*plain*fontSize: 12", 685, 292, false},
        {640, 480, "tarvolin.plain.fontSize: 999", 480, 200, true,
         "tarvolin: font size \"999\" ignored: 4 to 72 points\n"},
        {1024, 768, "*plain.font: fixed", 685, 292, true,
         "tarvolin: font \"fixed\" ignored: set fontName and fontSize\n"},
        {1024, 768, "*tabList: 1in", 685, 292},
        {640, 480, "*font: nosuch", 480, 200, true,
         "tarvolin: font \"nosuch\" ignored: set fontName and fontSize\n"
         "Warning: Cannot convert string \"nosuch\" to type FontStruct\n"},
    };
    Place place;
    for (const auto& row : rows) {
        SCOPED_TRACE(fmt::format("{}x{} {}", row.width, row.height, row.resource));
        const XServer server(fmt::format("{}x{}x24", row.width, row.height));
        Tool tool(place.root, *row.resource ? Names{"-xrm", row.resource} : Names{});
        OutsideUser user;
        ASSERT_TRUE(user.sees(programTitle)) << tool.output();
        const Spot main = user.size();
        EXPECT_EQ(main.x, row.mainWidth);
        EXPECT_EQ(main.y, row.mainHeight);
        if (main.x > row.width) continue;  // the button is not on the screen
        ASSERT_TRUE(user.opens({main.x * 231 / 274, main.y * 47 / 123}, "Setup ATM")) << tool.output();
        EXPECT_EQ(user.size().x <= row.width && user.size().y + frame <= row.height, row.fits);
        EXPECT_EQ(tool.output(), row.says);
        tool.signal(SIGTERM);
        EXPECT_EQ(tool.exitStatusWithin(std::chrono::seconds(10)), 128 + SIGTERM);
    }
}

TEST_F(Sizes, TablesTakeTheRoomOfLargerStatistics) {
    start();
    openDialog();
    const zRect least = placeOf(dialog);
    turnTo("lecStats");
    const auto heights = [this] {
        return Spot{placeOf(onPage("lesBusTable")).height, placeOf(onPage("lecTable")).height};
    };
    const Spot before = heights();
    user->resize(dialog, least.width + 200, least.height + 100);
    const Spot after = heights();
    EXPECT_EQ(after.x - before.x, 50);
    EXPECT_EQ(after.y - before.y, 50);
    turnTo("signallingStats");
    EXPECT_GT(placeOf(onPage("signallingTable")).width, least.width);
}

TEST_F(Sizes, WidthsOfColumnsLastForTheTable) {
    start();
    openDialog();
    turnTo("signallingStats");
    const int y = 8, width = table("signallingTable").columnWidth(1);
    const int edge = table("signallingTable").columnWidth(0) + width;
    user->drag(XtNameToWidget(onPage("signallingTable"), "*cells"), {edge, y}, {edge + 33, y});
    EXPECT_EQ(table("signallingTable").columnWidth(1), width + 33);
    const int other = table("signallingTable").columnWidth(2);
    openDialog();
    EXPECT_EQ(table("signallingTable").columnWidth(1), width + 33);
    EXPECT_EQ(table("signallingTable").columnWidth(2), other);
}

TEST_F(Sizes, FurtherWindowsComeBesideTheLastOneOnTheScreen) {
    start();
    std::set<Window> known;
    XWindowAttributes last{};
    for (int i = 0; i < 12; ++i) {
        SCOPED_TRACE(i);
        openDialog();
        XWindowAttributes now{};
        for (const Window shown : shownWindows(display()))
            if (known.insert(shown).second && shown != XtWindow(window->shell()))
                XGetWindowAttributes(display(), shown, &now);
        ASSERT_NE(now.width, 0);
        EXPECT_TRUE(std::abs(now.x - last.x) >= frame || std::abs(now.y - last.y) >= frame);
        EXPECT_GE(now.x, 0);
        EXPECT_GE(now.y, 0);
        EXPECT_LE(now.x + now.width, 1280);
        EXPECT_LE(now.y + now.height, 1024);
        last = now;
        user->focus(window->shell());
    }
}

// With twice the usual font, as on a screen of 192 dots per inch.
TEST_F(Sizes, PicturesGrowWithTheFont) {
    start();
    const auto picture = [this](int textHeight) {
        const Pixmap made = zPixmapOf(window->shell(), 2, 0, textHeight);
        Window rootWindow = 0;
        int x = 0, y = 0;
        unsigned width = 0, height = 0, border = 0, depth = 0;
        XGetGeometry(display(), made, &rootWindow, &x, &y, &width, &height, &border, &depth);
        return static_cast<int>(width);
    };
    const int usual = picture(0);
    EXPECT_EQ(picture(13), usual);
    EXPECT_EQ(picture(19), usual);
    EXPECT_EQ(picture(28), usual * 3 / 2);
    EXPECT_EQ(picture(37), usual * 2);
}
