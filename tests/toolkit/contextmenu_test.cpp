#include "tests/toolkit/desk.h"
#include "toolkit/controls/contextmenu.h"
#include "toolkit/controls/listbox.h"
#include "toolkit/table/table.h"

namespace {

constexpr zControlRow rows[] = {
    {.id = 10, .kind = zKind::listBox, .place = {4, 4, 80, 44}},
    {.id = 11, .kind = zKind::table, .place = {4, 54, 80, 44}, .tooltip = "Things"},
    {.id = 12, .kind = zKind::edit, .place = {90, 4, 60, 12}, .text = "7", .style = zReadOnly},
    {.id = 13, .kind = zKind::table, .place = {90, 54, 80, 44}},
};
constexpr zLayout layout{
    .id = 1, .name = "menus", .caption = "Menus", .width = 180, .height = 110, .rows = rows};

class ContextMenuTest : public DeskTest {
  protected:
    zListBox& list = window.control<zListBox>(10);
    zTable& table = window.control<zTable>(11);
    std::string log;

    ContextMenuTest() : DeskTest(layout) {}

    void SetUp() override {
        list.setLines({"first", "second"});
        list.select(0);
        table.resize(2, 3);
        for (const int id : {10, 11, 12})
            window.control<zControl>(id).setMenu([this, id] {
                return zMenuRows{
                    {.label = "One", .action = [this, id] { log += fmt::format("one {} ", id); }},
                    {.label = "Off", .action = [this] { log += "off "; }, .enabled = false},
                    {.label = "Two", .action = [this, id] { log += fmt::format("two {} ", id); }}};
            });
        DeskTest::SetUp();
    }
    bool open() { return user.widget("menu") != nullptr; }
    std::string after(std::initializer_list<const char*> keys) {
        log.clear();
        for (const char* key : keys) user.key(key);
        return log;
    }
};

TEST_F(ContextMenuTest, OpensByKeyInEachControlAndIsUsedByKeys) {
    for (const int id : {10, 11, 12}) {
        SCOPED_TRACE(id);
        XmProcessTraversal(window.control<zControl>(id).widget(), XmTRAVERSE_CURRENT);
        for (const auto& [key, held] :
             {std::pair<const char*, const char*>{"Menu", nullptr}, {"F10", "Shift_L"}}) {
            user.key(key, held);
            EXPECT_TRUE(open()) << key;
            EXPECT_EQ(after({"Return"}), fmt::format("one {} ", id));
            EXPECT_FALSE(open());
            user.key(key, held);
            EXPECT_EQ(after({"Down", "Return"}), fmt::format("two {} ", id)) << "over what is greyed";
            user.key(key, held);
            EXPECT_EQ(after({"Escape"}), "");
            EXPECT_FALSE(open());
        }
    }
}

TEST_F(ContextMenuTest, TheRightButtonMeansWhatIsUnderIt) {
    int selected = 0;
    list.onSelect = [&] { ++selected; };
    user.rightClickAt(list.widget(), 20, placeOf(list.widget()).height / 3);
    EXPECT_EQ(list.selected(), 1);
    EXPECT_EQ(selected, 1);
    EXPECT_TRUE(open());
    EXPECT_EQ(after({"Down", "Return"}), "two 10 ");

    user.rightClickAt(table.widget(), table.columnWidth(1) + 5, 2 * (table.textHeight() + 5) + 5);
    EXPECT_EQ(table.activeCell(), (zTableLoc{2, 2}));
    EXPECT_TRUE(open());
    user.click(XtNameToWidget(user.widget("menu"), "item"));
    EXPECT_EQ(log, "two 10 one 11 ");
    EXPECT_FALSE(open());

    user.rightClickAt(window.control<zControl>(13).widget(), 5, 5);
    EXPECT_FALSE(open()) << "it has none";
}

// As on a slow link, where the click is over before the program has heard of it.
TEST_F(ContextMenuTest, StaysAfterAClickThatIsToldLate) {
    Display* display = XtDisplay(table.widget());
    const int usual = XtGetMultiClickTime(display);
    XtSetMultiClickTime(display, 1000);
    user.rightButton(table.widget(), 5, 5, true);
    EXPECT_TRUE(user.until([this] { return open(); }));
    user.rightButton(table.widget(), 5, 5, false);
    std::this_thread::sleep_for(std::chrono::milliseconds(1200));
    user.settle();
    EXPECT_TRUE(open());
    EXPECT_EQ(after({"Return"}), "one 11 ");

    XtSetMultiClickTime(display, 100);
    user.rightButton(table.widget(), 5, 5, true);
    EXPECT_TRUE(user.until([this] { return open(); }));
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    user.clickAt(user.widget("menu"), 20, 60, 0);
    user.rightButton(user.widget("menu"), 20, 60, false);
    user.settle();
    EXPECT_EQ(log, "one 11 two 11 ") << "dragged to";
    EXPECT_FALSE(open());
    XtSetMultiClickTime(display, usual);
}

TEST_F(ContextMenuTest, ATablesTooltipNamesItAndStaysOffTheRows) {
    EXPECT_EQ(user.tooltipOf(table.widget()), "Things (right button or Menu key: menu)");
    Position top = 0, x = 0;
    XtTranslateCoords(table.outermost(), 0, 0, &x, &top);
    EXPECT_GE(placeOf(user.widget("TipShell")).y, top + placeOf(table.outermost()).height);
}

}  // namespace
