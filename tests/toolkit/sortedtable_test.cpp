#include "tests/toolkit/desk.h"
#include "toolkit/table/table.h"

#include <X11/keysym.h>
#include <random>

namespace {

using enum zKind;

constexpr zControlRow rows[] = {{.id = 30, .kind = table, .place = {4, 4, 120, 60}}};
constexpr zLayout layout{
    .id = 1, .name = "sorted", .caption = "Sorted", .width = 130, .height = 90, .rows = rows};

// What a row shows: its name, a number that may be unknown, a text.
struct Item {
    int name = 0;
    std::optional<int> count;
    std::string note;
};

constexpr int columns = 3, cellWidth = 90, labelsWidth = 30;
const std::string labels[] = {"", "Name", "Count", "Note"};

std::string textOf(const Item& item, int column) {
    return column == 1   ? fmt::format("n{}", item.name)
           : column == 2 ? item.count ? std::to_string(*item.count) : "-"
                         : item.note;
}

zSortKey keyOf(const Item& item, int column) {
    return column == 1   ? zNumberKey(item.name)
           : column == 2 ? item.count ? zNumberKey(*item.count) : zSortKey{}
                         : zTextKey(item.note);
}

class SortedTableTest : public DeskTest {
  protected:
    zTable& table = window.control<zTable>(30);
    std::vector<Item> items;
    std::vector<int> written;  // rows on demand

    SortedTableTest() : DeskTest(layout) {}
    ~SortedTableTest() override { table.showAllColumns(); }

    void SetUp() override {
        give({{1, 30, "pear"},
              {2, 4, "Apple"},
              {3, {}, "fig"},
              {4, 30, "apple"},
              {5, -7, "PEAR"},
              {6, 4, ""}});
        for (int column = 1; column <= columns; ++column) {
            table.setText({column, 0}, labels[column]);
            table.setColumnWidth(column, cellWidth);
        }
        table.numberRows(true);
        table.setColumnWidth(0, labelsWidth);
        table.writeOnDemand([this](int row) {
            written.push_back(row);
            for (int column = 1; column <= columns; ++column)
                table.setText({column, row}, textOf(items[asIndex(row) - 1], column));
        });
        table.sortable([this](zTableLoc l) { return keyOf(items[asIndex(l.row) - 1], l.column); });
        table.nameRows([this](int row) { return zNumberKey(items[asIndex(row) - 1].name); });
        table.rowsChanged();
        DeskTest::SetUp();
    }
    void give(std::vector<Item> now) {
        items = std::move(now);
        table.resize(columns, static_cast<int>(items.size()));
        table.rowsChanged();
    }
    // The names in the order that is shown.
    std::vector<int> order() const {
        std::vector<int> names;
        for (int place = 1; place <= table.model().rows(); ++place)
            names.push_back(items[asIndex(table.rowAt(place)) - 1].name);
        return names;
    }
    int active() const {
        const int row = table.activeCell().row;
        return row > 0 ? items[asIndex(row) - 1].name : 0;
    }
    int rowHeight() const { return table.textHeight() + 4; }
    int labelHeight() const { return table.textHeight() + 6; }
    // A click on what is shown in a place, labels being place 0.
    void clickCell(int column, int place) {
        user.clickAt(table.widget(), labelsWidth + (column - 1) * cellWidth + cellWidth / 2,
                     place == 0 ? 5 : labelHeight() + (place - 1) * rowHeight() + 5);
    }
};

using Names = std::vector<int>;

TEST_F(SortedTableTest, ClicksOnALabelSortUpThenDownThenNotAtAll) {
    const Names given{1, 2, 3, 4, 5, 6};
    const struct {
        int column;
        Names order;
    } clicks[] = {
        {2, {5, 2, 6, 1, 4, 3}},
        {2, {1, 4, 2, 6, 5, 3}},
        {2, given},
        {3, {6, 2, 4, 3, 1, 5}},
        {1, given},
        {3, {6, 2, 4, 3, 1, 5}},
        {3, {1, 5, 3, 2, 4, 6}},
        {2, {5, 2, 6, 1, 4, 3}},
    };
    for (const auto& click : clicks) {
        clickCell(click.column, 0);
        EXPECT_EQ(order(), click.order) << click.column << (table.sorting().descending ? " down" : " up");
    }
    EXPECT_EQ(table.tabSeparated(), "\tName\tCount\tNote\n5\tn5\t-7\tPEAR\n2\tn2\t4\tApple\n6\tn6\t4\t\n"
                                    "1\tn1\t30\tpear\n4\tn4\t30\tapple\n3\tn3\t-\tfig\n");

    // The order holds while rows change, come and go; a click means the row that is seen there.
    items[2].count = 10;
    items.push_back({7, 5, "new"});
    give(items);
    EXPECT_EQ(order(), (Names{5, 2, 6, 7, 3, 1, 4}));
    user.settle();
    clickCell(1, 3);
    EXPECT_EQ(active(), 6);
    user.key("Down");
    EXPECT_EQ(active(), 7);
    user.key("Home", "Control_L");
    EXPECT_EQ(table.activeCell(), (zTableLoc{1, 5}));
    user.key("o", "Control_L");
    EXPECT_EQ(table.sorting(), (zTable::Sorting{1, false}));

    table.resize(1, 7);
    table.sortBy({2, false});
    EXPECT_EQ(table.sorting(), zTable::Sorting{});
    table.sortBy({1, true});
    table.sortable({});
    EXPECT_EQ(order(), (Names{1, 2, 3, 4, 5, 6, 7}));
    table.sortFurther(1);
    EXPECT_EQ(table.sorting().column, 0) << "its owner does not let it be sorted";
}

TEST_F(SortedTableTest, OnlyAClickOnALabelSorts) {
    const int y = labelHeight() / 2, edge = labelsWidth + cellWidth, inside = edge - cellWidth / 2;
    const auto drag = [&](XUser::Place from, XUser::Place to) { user.drag(table.widget(), from, to); };
    drag({edge, y}, {edge + 10, y});
    drag({edge + 10, y}, {edge, y});
    user.clickAt(table.widget(), edge, y);
    user.clickAt(table.widget(), edge, y, 2);
    table.setColumnWidth(1, cellWidth);
    drag({inside, y}, {inside + cellWidth, y});
    drag({inside, y}, {inside, y + 40});
    drag({inside, y + 40}, {inside, y});
    user.clickAt(table.widget(), 5, 5);  // above the row labels
    user.rightClickAt(table.widget(), inside, y);
    EXPECT_EQ(table.sorting().column, 0);
    clickCell(1, 0);
    EXPECT_EQ(table.sorting().column, 1);
}

// Dark pixels of a label.
TEST_F(SortedTableTest, TheMarkStandsInTheLabelOfTheColumnAlone) {
    const auto ink = [this](int from, int to) {
        user.settle();
        const WindowImage picture(table.widget());
        int dark = 0;
        for (int x = from; x < to; ++x)
            for (int y = 3; y < labelHeight() - 3; ++y) dark += (picture.at(x, y) & 0xff) < 0x40;
        return dark;
    };
    const int first = table.columnWidth(1) + labelsWidth, second = first + table.columnWidth(2);
    const int without = ink(first, second), other = ink(labelsWidth, first);
    table.sortBy({2, false});
    const int up = ink(first, second);
    EXPECT_GT(up, without + 5);
    EXPECT_EQ(ink(labelsWidth, first), other);
    table.sortBy({2, true});
    EXPECT_EQ(ink(first, second), up) << "the same triangle upside down";
    table.sortBy({});
    EXPECT_EQ(ink(first, second), without);

    // A column that is fitted has room for it; in the narrowest one it is there, too.
    table.fitColumn(2, {"1"});
    EXPECT_GT(table.columnWidth(2), table.textWidth("Count") + 12);
    table.setColumnWidth(2, 16);
    const int narrow = ink(first, first + 16);
    table.sortBy({2, false});
    EXPECT_GT(ink(first, first + 16), narrow);
}

TEST_F(SortedTableTest, TheActiveCellGoesWithItsRow) {
    int moves = 0;
    table.onActiveChange = [&] { ++moves; };
    for (const int column : {0, 2}) {
        SCOPED_TRACE(column);
        table.sortBy({column, false});
        const auto whole = items;
        table.setActiveCell({2, 4});
        items.erase(items.begin());
        give(items);
        EXPECT_EQ(table.activeCell(), (zTableLoc{2, 3}));
        items.insert(items.begin(), {{11, 0, ""}, {12, 99, ""}});
        give(items);
        EXPECT_EQ(table.activeCell(), (zTableLoc{2, 5}));
        std::ranges::reverse(items);
        give(items);
        EXPECT_EQ(active(), 4);

        give({});
        EXPECT_EQ(table.activeCell(), zTableLoc{});
        give(whole);
        EXPECT_EQ(table.activeCell(), (zTableLoc{2, 4})) << "all had gone";
        items.erase(items.begin() + 3);
        give(items);
        EXPECT_EQ(table.activeCell(), zTableLoc{}) << "another row is not what was meant";
        give(whole);
        EXPECT_EQ(table.activeCell(), (zTableLoc{2, 4})) << "it is there again";
        items.erase(items.begin() + 3);
        give(items);
        table.setActiveCell({1, 1});
        give(whole);
        EXPECT_EQ(table.activeCell(), (zTableLoc{1, 1})) << "another was chosen meanwhile";
    }
    EXPECT_EQ(moves, 0) << "nobody has moved it";

    // Keys go on from where the row was.
    table.sortBy({2, false});  // 5 2 6 1 4 3
    table.setActiveCell({2, 6});
    items.erase(items.begin() + 5);
    give(items);
    user.key("Down");
    EXPECT_EQ(active(), 4) << "5 2 1 4 3: below the third place";
    EXPECT_EQ(table.activeCell().column, 2);
}

// The first rows of a sorted table stay in sight; further down the active row does.
TEST_F(SortedTableTest, AFoundRowStaysInSightWhereverItGoes) {
    std::vector<Item> many;
    for (int i = 1; i <= 200; ++i) many.push_back({i, i, ""});
    give(many);
    table.sortBy({2, true});
    clickCell(1, 1);
    ASSERT_EQ(active(), 200);
    for (const int name : {200, 50}) {
        ASSERT_TRUE(name == 200 || table.find(fmt::format("n{}", name)));
        for (Item& item : many) item.count = 1000 - *item.count;  // the last becomes the first
        written.clear();
        give(many);
        EXPECT_EQ(active(), name);
        EXPECT_EQ(std::ranges::count(written, name), name == 50) << name;
    }
}

TEST_F(SortedTableTest, OnlyPlacesThatShowAnotherRowAreDrawn) {
    std::vector<Item> many;
    for (int name = 1; name <= 500; ++name) many.push_back({name, name * 10, ""});
    give(many);
    table.sortBy({2, true});
    user.settle();
    const auto requests = [&](auto change) {
        XSync(XtDisplay(table.widget()), False);
        const unsigned long before = NextRequest(XtDisplay(table.widget()));
        written.clear();
        change(items);
        give(items);
        application.handlePending();
        return NextRequest(XtDisplay(table.widget())) - before;
    };
    EXPECT_EQ(requests([](auto&) {}), 0U);
    EXPECT_LT(written.size(), 20U);
    EXPECT_EQ(requests([](auto& all) { all[10].count = 101; }), 0U) << "out of sight";
    const auto one = requests([](auto& all) { all[499].count = 5001; });
    const auto two = requests([](auto& all) { all[498].count = 5002; });
    EXPECT_GT(one, 0U);
    EXPECT_GT(two, one);
    EXPECT_LT(two, 8 * one + 20) << "two rows of four cells each";
    EXPECT_EQ(order().front(), 499);

    // The view stays at the top though the active row sinks.
    table.setActiveCell({1, 500});
    requests([](auto& all) { all[499].count = 0; });
    EXPECT_EQ(resourceOf<int>(user.widget("vertical"), XmNvalue), 1);
    EXPECT_EQ(active(), 500);
    user.key("Left");
    EXPECT_GT(resourceOf<int>(user.widget("vertical"), XmNvalue), 400);
}

TEST_F(SortedTableTest, HiddenColumnsAreNeitherSeenNorReachedNorCopied) {
    table.setActiveCell({2, 1});
    table.sortBy({2, true});
    table.hideColumn(2);
    EXPECT_EQ(table.sorting().column, 0);
    EXPECT_EQ(table.activeCell(), (zTableLoc{3, 1}));
    EXPECT_EQ(table.tabSeparated(2), "2\tn2\tApple");
    EXPECT_EQ(table.tabSeparated().substr(0, 21), "\tName\tNote\n1\tn1\tpear\n");
    user.settle();
    user.key("Left");
    EXPECT_EQ(table.activeCell(), (zTableLoc{1, 1}));
    user.key("Right");
    EXPECT_EQ(table.activeCell(), (zTableLoc{3, 1}));
    clickCell(2, 2);
    EXPECT_EQ(table.activeCell(), (zTableLoc{3, 2})) << "what stands there now";
    EXPECT_EQ(table.columnWidth(2), 0);
    table.setColumnWidth(2, 50);
    EXPECT_EQ(table.columnWidth(2), 0);

    zFormDialog later(application, layout);
    EXPECT_FALSE(later.control<zTable>(30).hidesColumns())
        << "nothing in a new window says that there are more";

    table.hideColumn(3);
    EXPECT_EQ(table.activeCell(), (zTableLoc{1, 2}));
    EXPECT_FALSE(table.canHide(1));
    table.showAllColumns();
    EXPECT_EQ(table.columnWidth(2), 50);
    EXPECT_EQ(table.tabSeparated(2), "2\tn2\t4\tApple");
    EXPECT_FALSE(table.hidesColumns());
}

TEST_F(SortedTableTest, FindGoesThroughWhatIsShownAndOnFromTheFirstCell) {
    int moves = 0;
    table.onActiveChange = [&] { ++moves; };
    const auto found = [&](const char* text) {
        return table.find(text) ? active() * 10 + table.activeCell().column : 0;
    };
    const struct {
        const char* text;
        int found;  // ten times the name, and the column
    } steps[] = {{"apple", 23}, {"APPL", 43},   {"apple", 23}, {"n2", 21},  {"apple", 23},
                 {"n", 31},     {"nothing", 0}, {"", 0},       {"fig", 33}, {"fig", 33}};
    for (const auto& step : steps) EXPECT_EQ(found(step.text), step.found) << step.text;
    EXPECT_EQ(moves, 7);
    EXPECT_EQ(active(), 3);
    table.sortBy({2, false});  // 5 2 6 1 4 3
    for (const int name : {5, 1}) EXPECT_EQ(found("pear"), name * 10 + 3);
    table.hideColumn(3);
    EXPECT_EQ(found("pear"), 0);
    give({});
    EXPECT_EQ(found("n"), 0);
}

TEST_F(SortedTableTest, FindWritesNoMoreRowsThanItNeeds) {
    std::vector<Item> many;
    for (int name = 1; name <= 5000; ++name) many.push_back({name, name, name == 300 ? "here" : ""});
    give(many);
    user.settle();
    table.setActiveCell({1, 100});
    user.settle();
    written.clear();
    EXPECT_TRUE(table.find("here"));
    EXPECT_LE(written.size(), 201U);

    table.rowsChanged();
    written.clear();
    table.readUnwritten([this](zTableLoc l) { return textOf(items[asIndex(l.row) - 1], l.column); });
    EXPECT_TRUE(table.find("n299"));
    EXPECT_LT(written.size(), 20U) << "those that are seen";
    EXPECT_FALSE(table.find("nowhere"));
    EXPECT_LT(written.size(), 20U);
}

// ---- random actions beside a simple model ----

struct Random {
    std::mt19937 engine{std::getenv("TV_SEED") ? static_cast<unsigned>(std::atoi(std::getenv("TV_SEED")))
                                               : 7U};
    int below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(engine); }
};

class RandomTableTest : public SortedTableTest {
  protected:
    Random random;
    std::set<int> hidden;
    int name = 0, column = 0;  // of the active cell; name 0: none was chosen
    int place = 0;             // its last one

    // The owner's rows as they should be shown.
    std::vector<Item> shown() const {
        std::vector<Item> all = items;
        const zTable::Sorting by = table.sorting();
        if (by.column == 0) return all;
        std::ranges::stable_sort(all, [by](const Item& a, const Item& b) {
            const zSortKey x = keyOf(a, by.column), y = keyOf(b, by.column);
            if (x.known != y.known) return x.known;
            return by.descending ? std::pair(x.high, x.low) > std::pair(y.high, y.low)
                                 : std::pair(x.high, x.low) < std::pair(y.high, y.low);
        });
        return all;
    }
    int placeOfActive(const std::vector<Item>& all) const {
        const auto at = std::ranges::find(all, name, &Item::name);
        return name == 0 || at == all.end() ? 0 : static_cast<int>(at - all.begin()) + 1;
    }
    std::vector<int> seen() const {
        std::vector<int> left;
        for (int i = 1; i <= columns; ++i)
            if (!hidden.contains(i)) left.push_back(i);
        return left;
    }
    void check(const std::string& action) {
        const std::vector<Item> all = shown();
        std::string text;
        for (const int i : seen()) text += '\t' + labels[i];
        text += '\n';
        for (const Item& item : all) {
            const auto row = std::ranges::find(items, item.name, &Item::name) - items.begin() + 1;
            text += std::to_string(row);
            for (const int i : seen()) text += '\t' + textOf(item, i);
            text += '\n';
        }
        ASSERT_EQ(table.tabSeparated(), text) << action;
        if (const int now = placeOfActive(all)) {
            place = now;
            ASSERT_EQ(active(), name) << action;
            ASSERT_EQ(table.activeCell().column, column) << action;
        } else {
            ASSERT_EQ(table.activeCell(), zTableLoc{}) << action;
        }
    }
    void choose(const std::vector<Item>& all, int at, int inColumn) {
        name = all[asIndex(at) - 1].name;
        column = inColumn;
    }
    void key(KeySym symbol, unsigned state = 0) {
        XEvent event{};
        event.xkey.type = KeyPress;
        event.xkey.display = XtDisplay(table.widget());
        event.xkey.window = XtWindow(table.widget());
        event.xkey.keycode = XKeysymToKeycode(event.xkey.display, symbol);
        event.xkey.state = state;
        XtDispatchEventToWidget(table.widget(), &event);
    }
    void button(int type, int x, int y) {
        XEvent event{};
        event.xbutton.type = type;
        event.xbutton.display = XtDisplay(table.widget());
        event.xbutton.window = XtWindow(table.widget());
        event.xbutton.button = Button1;
        event.xbutton.x = x;
        event.xbutton.y = y;
        event.xbutton.time = time += 1000;
        XtDispatchEventToWidget(table.widget(), &event);
    }
    std::string changeRows() {
        int next = 0;
        for (const Item& item : items) next = std::max(next, item.name);
        std::vector<Item> now = items;
        switch (random.below(4)) {
        case 0:
            while (!now.empty() && random.below(3))
                now.erase(now.begin() + random.below(static_cast<int>(now.size())));
            break;
        case 1:
            for (int i = random.below(20); i > 0; --i)
                now.insert(now.begin() + random.below(static_cast<int>(now.size()) + 1), {++next, {}, ""});
            break;
        case 2:
            std::ranges::shuffle(now, random.engine);
            break;
        }
        for (Item& item : now) {
            if (random.below(3)) continue;
            item.count = random.below(4) ? std::optional(random.below(50) - 25) : std::nullopt;
            item.note = std::string(1, static_cast<char>("aAbBc"[random.below(5)]));
        }
        if (!random.below(20)) now.clear();
        give(std::move(now));
        return "change";
    }
    std::string move() {
        const struct {
            KeySym symbol;
            int rows, columns;
        } keys[] = {{XK_Up, -1, 0},   {XK_Down, 1, 0},  {XK_Left, 0, -1},
                    {XK_Right, 0, 1}, {XK_Home, 0, -9}, {XK_End, 0, 9}};
        const auto& pressed = keys[random.below(6)];
        key(pressed.symbol);
        const std::vector<Item> all = shown();
        const std::vector<int> left = seen();
        if (all.empty()) return "move in nothing";
        const auto at = std::ranges::find(left, column);
        const int index = name == 0 ? -1 : static_cast<int>(at - left.begin());
        const int last = static_cast<int>(left.size()) - 1;
        choose(all, std::clamp((name ? place : 0) + pressed.rows, 1, static_cast<int>(all.size())),
               left[asIndex(std::clamp(index + pressed.columns, 0, last))]);
        return "move";
    }
    std::string find() {
        if (random.below(2))
            table.readUnwritten([this](zTableLoc l) { return textOf(items[asIndex(l.row) - 1], l.column); });
        else
            table.readUnwritten({});
        const char* const texts[] = {"A", "b", "n1", "-", "1"};
        const std::string text = texts[random.below(5)];
        const std::vector<Item> all = shown();
        std::vector<std::pair<int, int>> cells, rest;  // from the active one on
        for (int at = 1; at <= static_cast<int>(all.size()); ++at)
            for (const int i : seen())
                (std::pair(at, i) >
                         std::pair(name ? std::max(1, std::min(place, static_cast<int>(all.size()))) : 0,
                                   name ? column : 0)
                     ? cells
                     : rest)
                    .push_back({at, i});
        cells.insert(cells.end(), rest.begin(), rest.end());
        const auto has = [&](const auto& cell) {
            const std::string in = textOf(all[asIndex(cell.first) - 1], cell.second);
            const auto same = [](char a, char b) { return std::tolower(a) == std::tolower(b); };
            return std::search(in.begin(), in.end(), text.begin(), text.end(), same) != in.end();
        };
        const auto found = std::ranges::find_if(cells, has);
        EXPECT_EQ(table.find(text), found != cells.end()) << text;
        if (found != cells.end()) choose(all, found->first, found->second);
        return "find " + text;
    }
    std::string hideOrShow() {
        if (!random.below(3)) {
            hidden.clear();
            table.showAllColumns();
            return "show all";
        }
        const int gone = random.below(columns) + 1;
        table.hideColumn(gone);
        const std::vector<int> left = seen();
        if (hidden.contains(gone) || left.size() == 1) return "hide nothing";
        if (column == gone) {
            const auto at = std::ranges::find(left, gone);
            column = at + 1 != left.end() ? at[1] : at[-1];
        }
        hidden.insert(gone);
        return "hide";
    }
    std::string clickLabel() {
        const int x = random.below(200) + labelsWidth;
        const zTable::Sorting before = table.sorting();
        button(ButtonPress, x, 5);
        button(ButtonRelease, x, 5);
        const zTable::Sorting now = table.sorting();
        EXPECT_FALSE(hidden.contains(now.column));
        EXPECT_TRUE(now == before || now.column != before.column || now.descending) << "up, down, not at all";
        return "label";
    }
    std::string act() {
        switch (random.below(10)) {
        case 0:
        case 1:
        case 2:
            return changeRows();
        case 3:
        case 4:
            return move();
        case 5:
            return find();
        case 6:
            return hideOrShow();
        case 7:
            return clickLabel();
        case 8:
            table.setColumnWidth(random.below(columns) + 1, 20 + random.below(200));
            table.place({random.below(5), 5, 60 + random.below(250), 40 + random.below(150)});
            return "size";
        default:
            key(XK_o, ControlMask);
            return "sort";
        }
    }

  private:
    Time time = 1000;
};

TEST_F(RandomTableTest, ThousandsOfActionsLeaveWhatASimpleModelHas) {
    for (int step = 0; step < 3000 && !HasFatalFailure(); ++step) {
        const std::string action = act();
        if (random.below(3) == 0) application.handlePending();
        check(fmt::format("{}: {}", step, action));
    }
}

}  // namespace
