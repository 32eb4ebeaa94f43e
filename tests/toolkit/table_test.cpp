#include "tests/toolkit/desk.h"
#include "toolkit/controls/button.h"
#include "toolkit/table/table.h"

namespace {

using enum zKind;

constexpr zControlRow rows[] = {{.id = 30, .kind = table, .place = {4, 4, 120, 60}},
                                {.id = 31,
                                 .kind = bitmapButton,
                                 .place = {4, 70, 40, 14},
                                 .text = "Other",
                                 .style = zDefaultButton | zCancelButton}};
constexpr zLayout layout{
    .id = 1, .name = "tables", .caption = "Tables", .width = 130, .height = 90, .rows = rows};

class TableTest : public DeskTest {
  protected:
    zTable& table = window.control<zTable>(30);
    Display* display = XtDisplay(window.shell());

    TableTest() : DeskTest(layout) {}

    void SetUp() override {
        table.resize(3, 50);
        for (int column = 1; column <= 3; ++column) {
            table.setText({column, 0}, fmt::format("Label {}", column));
            table.setColumnWidth(column, 70);
            for (int row = 1; row <= 50; ++row)
                table.setText({column, row}, fmt::format("{}/{}", column, row));
        }
        table.numberRows(true);
        table.setColumnWidth(0, 30);
        DeskTest::SetUp();
    }

    int rowHeight() const { return table.textHeight() + 4; }
    int labelHeight() const { return table.textHeight() + 6; }
    int height() const { return placeOf(table.widget()).height; }
    // The dark pixels of a place in the table's window: what is written there.
    int ink(int column, int row) const {
        const int x = 30 + (column - 1) * 70, y = labelHeight() + (row - 1) * rowHeight();
        const WindowImage picture(table.widget());
        int dark = 0;
        for (int i = x + 2; i < x + 66; ++i)
            for (int j = y + 2; j < y + rowHeight() - 2; ++j) dark += (picture.at(i, j) & 0xff) < 0x40;
        return dark;
    }
    // Requests that an action sends, the drawing after it included.
    template <typename Action> unsigned long requests(Action action) {
        application.handlePending();
        XSync(display, False);
        const unsigned long before = NextRequest(display);
        action();
        application.handlePending();
        return NextRequest(display) - before;
    }
};

}  // namespace

TEST_F(TableTest, OnlyWhatIsChangedAndSeenIsDrawn) {
    const int untouched = ink(2, 2);
    EXPECT_GT(untouched, 10);
    EXPECT_EQ(requests([&] {
                  for (int row = 1; row <= 50; ++row) table.setText({2, row}, fmt::format("2/{}", row));
              }),
              0U)
        << "the same texts";
    EXPECT_EQ(requests([&] { table.setText({2, 40}, "out of sight"); }), 0U);
    EXPECT_EQ(requests([&] { table.resize(3, 50); }), 0U);
    const unsigned long one = requests([&] { table.setText({1, 2}, ""); });
    EXPECT_GT(one, 0U);
    EXPECT_LT(one, 12U);
    XSync(display, False);
    EXPECT_EQ(ink(1, 2), 0);
    EXPECT_EQ(ink(2, 2), untouched);
    EXPECT_LT(requests([&] {
                  for (int i = 0; i < 1000; ++i) table.setText({1, 2}, std::to_string(i));
              }),
              12U)
        << "drawn once, however often it changed";
    user.settle();
    EXPECT_GT(ink(1, 2), 10);
}

TEST_F(TableTest, RowsOnDemandAreWrittenWhenTheyAreSeenOrAskedFor) {
    std::vector<int> written;
    int round = 0;
    table.writeOnDemand([&](int row) {
        written.push_back(row);
        table.setText({2, row}, fmt::format("round {} row {}", round, row));
    });
    const auto change = [&] {
        written.clear();
        ++round;
        return requests([&] { table.rowsChanged(); });
    };
    const auto from = [](int first, int last) {
        std::vector<int> numbers;
        for (int row = first; row <= last; ++row) numbers.push_back(row);
        return numbers;
    };
    const int seen = (height() - labelHeight() + rowHeight() - 1) / rowHeight();
    ASSERT_LT(seen, 20);
    EXPECT_GT(change(), 0U);
    EXPECT_EQ(written, from(1, seen));
    written.clear();
    table.setActiveCell({1, 30});
    table.setText({1, 1}, "later");
    user.settle();
    ASSERT_FALSE(written.empty());
    EXPECT_EQ(written, from(written.front(), written.back()));
    EXPECT_LE(written.front(), 30);
    EXPECT_GE(written.back(), 30);
    EXPECT_LE(written.size(), static_cast<std::size_t>(seen) + 1);
    written.clear();
    EXPECT_EQ(table.text({2, 45}), "round 1 row 45");
    EXPECT_EQ(table.text({2, 45}), "round 1 row 45");
    EXPECT_EQ(written, from(45, 45));
    --round;  // the same texts again
    EXPECT_EQ(change(), 0U);
    EXPECT_NE(table.tabSeparated().find("\tround 1 row 50\t"), std::string::npos);
    table.resize(3, 40);
    table.resize(3, 60);
    user.settle();
    EXPECT_EQ(table.text({2, 60}), "") << "nobody has said that rows have changed";
    table.writeOnDemand({});
    table.rowsChanged();
    EXPECT_EQ(table.text({2, 5}), "round 1 row 5");
}

TEST_F(TableTest, KeyboardAndMouseMoveTheActiveCell) {
    int changes = 0;
    table.onActiveChange = [&] { ++changes; };
    user.clickAt(table.widget(), 30 + 75, labelHeight() + rowHeight() + 5);
    EXPECT_EQ(table.activeCell(), (zTableLoc{2, 2}));
    const int page = (height() - labelHeight()) / rowHeight();
    const struct {
        const char *key, *held;
        zTableLoc active;
    } steps[] = {{"Down", nullptr, {2, 3}}, {"Right", nullptr, {3, 3}},       {"Right", nullptr, {3, 3}},
                 {"Home", nullptr, {1, 3}}, {"Next", nullptr, {1, 3 + page}}, {"Prior", nullptr, {1, 3}},
                 {"Up", nullptr, {1, 2}},   {"End", "Control_L", {3, 50}},    {"Home", "Control_L", {1, 1}},
                 {"Up", nullptr, {1, 1}}};
    for (const auto& step : steps) {
        user.key(step.key, step.held);
        EXPECT_EQ(table.activeCell(), step.active) << step.key;
    }
    EXPECT_EQ(changes, 9);
    table.setActiveCell({2, 30});
    table.setActiveCell({0, 0});
    table.setActiveCell({9, 99});
    EXPECT_EQ(changes, 9) << "by program";
    EXPECT_EQ(table.activeCell(), (zTableLoc{0, 0}));
    user.clickAt(table.widget(), 40, 5);  // a label
    EXPECT_EQ(table.activeCell(), (zTableLoc{0, 0}));
}

// The active cell is outlined, and the table is framed, as long as it has the focus of its window.
TEST_F(TableTest, TheFocusIsShownWhileItIsThere) {
    const auto dark = [this] {
        user.settle();
        return user.colours(table.outermost())[0];
    };
    Widget other = user.widget("id31");
    XmProcessTraversal(other, XmTRAVERSE_CURRENT);
    table.setActiveCell({2, 2});
    const int without = dark();
    user.pointAt(table.widget());
    EXPECT_EQ(dark(), without);
    XmProcessTraversal(table.widget(), XmTRAVERSE_CURRENT);
    const int with = dark();
    EXPECT_GT(with, without + 2 * 60);
    user.pointAt(other);
    EXPECT_EQ(dark(), with);
    XmProcessTraversal(other, XmTRAVERSE_CURRENT);
    EXPECT_EQ(dark(), without);

    XSetInputFocus(display, PointerRoot, RevertToNone, CurrentTime);  // the focus is with the pointer
    user.pointAt(other);
    EXPECT_EQ(dark(), without);
    user.pointAt(table.widget());
    EXPECT_EQ(dark(), without) << "the pointer is over the table, the focus of the window is not";
    user.focus(window.shell());

    table.resize(3, 0);
    const int empty = dark();
    XmProcessTraversal(table.widget(), XmTRAVERSE_CURRENT);
    EXPECT_GT(dark(), empty + 100) << "without a cell to outline";
}

TEST_F(TableTest, RowsThatComeAndGoLeaveTheViewWhereItWasScrolled) {
    const auto firstRow = [this] { return resourceOf<int>(user.widget("vertical"), XmNvalue); };
    user.clickAt(table.widget(), 40, labelHeight() + rowHeight() + 5);
    ASSERT_EQ(table.activeCell(), (zTableLoc{1, 2}));
    user.clickAt(user.widget("vertical"), 7, height() / 2);
    const int scrolled = firstRow();
    EXPECT_GT(scrolled, 2);
    for (const int count : {51, 60, 0, 50}) {
        table.resize(3, count);
        EXPECT_EQ(firstRow(), count ? scrolled : 1) << count;
    }
    EXPECT_EQ(table.activeCell(), (zTableLoc{1, 2}));
    table.setActiveCell({1, 50});
    table.setColumnWidth(3, 2000);  // the bar takes room from below
    user.settle();
    const int whole = (height() - labelHeight()) / rowHeight();
    EXPECT_EQ(firstRow(), 50 - whole + 1) << "a cell that was seen stays so";
}

TEST_F(TableTest, ColumnsAreDraggedAtTheirEdgesAndFittedToTheirTexts) {
    const int y = labelHeight() / 2, edge = 30 + 70;
    const auto drag = [&](int from, int to) { user.drag(table.widget(), {from, y}, {to, y}); };
    table.setActiveCell({2, 2});
    drag(edge + 2, edge + 22);
    EXPECT_EQ(table.columnWidth(1), 90);
    EXPECT_EQ(table.columnWidth(2), 70);
    drag(edge + 20, 0);
    EXPECT_GT(table.columnWidth(1), 10) << "never so narrow that it is lost";
    const int narrow = 30 + table.columnWidth(1);
    drag(narrow, narrow + 50);
    drag(narrow + 10, narrow + 40);  // no edge here
    user.drag(table.widget(), {narrow + 50, labelHeight() + 5}, {narrow + 90, labelHeight() + 5});
    EXPECT_EQ(30 + table.columnWidth(1), narrow + 50) << "rows have no edges";
    EXPECT_EQ(table.activeCell(), (zTableLoc{2, 1}));

    table.setText({1, 45}, "a text that nobody has seen");
    user.clickAt(table.widget(), narrow + 50, y, 2);
    EXPECT_EQ(table.columnWidth(1), table.textWidth("a text that nobody has seen") + 8);
    EXPECT_EQ(table.columnWidth(2), 70);
    const int fitted = table.columnWidth(1);
    table.setColumnWidth(1, 70);
    EXPECT_EQ(table.columnWidth(1), fitted) << "the user's choice stays";
    drag(30 + fitted, 30 + 70);  // for the other tests
}

TEST_F(TableTest, EscapeCallsTheDragOfAColumnOff) {
    auto& other = window.control<zBitmapButton>(31);
    int closed = 0;
    other.onClick = [&] { ++closed; };
    XmProcessTraversal(other.widget(), XmTRAVERSE_CURRENT);
    const int y = labelHeight() / 2, edge = 30 + 2 * 70;
    user.drag(table.widget(), {edge, y}, {edge + 20, y}, "Escape");
    EXPECT_EQ(table.columnWidth(2), 70);
    table.setColumnWidth(2, 80);
    EXPECT_EQ(table.columnWidth(2), 80) << "nothing was chosen";

    user.drag(table.widget(), {edge + 10, y}, {edge, y});
    user.clickAt(table.widget(), edge + 20, y);  // what follows is no double click
    user.drag(table.widget(), {edge, y}, {-500, y}, "Escape");
    EXPECT_EQ(table.columnWidth(2), 70);
    table.setColumnWidth(2, 80);
    EXPECT_EQ(table.columnWidth(2), 70) << "what was chosen before counts";
    EXPECT_EQ(closed, 0);
    user.key("Escape");
    EXPECT_EQ(closed, 1);

    // Other keys neither end the drag nor reach a button meanwhile.
    for (const char* key : {"Return", "KP_Enter", "Tab", "Down"})
        for (const auto& [from, to] : {std::pair{edge, edge + 10}, {edge + 10, edge}}) {
            user.drag(table.widget(), {from, y}, {to, y}, key);
            user.clickAt(table.widget(), edge + 30, y);
            EXPECT_EQ(table.columnWidth(2), 70 + to - edge) << key;
        }
    EXPECT_EQ(closed, 1);
    EXPECT_EQ(table.activeCell(), zTableLoc{});
    user.key("Return");
    EXPECT_EQ(closed, 2);
}

TEST_F(TableTest, ControlCPutsLabelsAndRowsOnTheClipboard) {
    table.resize(2, 2);
    user.clickAt(table.widget(), 60, labelHeight() + 5);
    user.key("c", "Control_L");
    EXPECT_EQ(user.clipboard(), "\tLabel 1\tLabel 2\n1\t1/1\t2/1\n2\t1/2\t2/2\n");
}

TEST_F(TableTest, TablesMayGrowToTheirLimitShrinkToNothingAndGoWhileDrawingIsDue) {
    table.resize(1000, 100000);
    EXPECT_EQ(table.model().columns(), zTableModel::mostColumns);
    EXPECT_EQ(table.model().rows(), 65535);
    table.setText({1, 65535}, "last");
    table.setActiveCell({1, 65535});
    user.settle();
    table.setActiveCell({0, 0});
    table.resize(0, 0);
    user.settle();
    EXPECT_EQ(ink(1, 1), 0);
    user.key("End", "Control_L");
    EXPECT_EQ(table.activeCell(), (zTableLoc{0, 0}));
    table.resize(1, 1);
    table.setFont("Liberation Sans:size=20");
    table.setFont("no such font:size=-1");
    table.enable(false);
    user.settle();
    table.setText({1, 1}, "due");
}

TEST_F(TableTest, ATextThatIsTooWideStaysInItsCell) {
    table.setText({1, 1}, "");
    table.setText({3, 1}, "");
    table.setText({2, 1}, std::string(200, 'W') + "\t\xe9");
    user.settle();
    EXPECT_GT(ink(2, 1), 50);
    EXPECT_EQ(ink(1, 1) + ink(3, 1), 0);
}
