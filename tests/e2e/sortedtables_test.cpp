// Sorting, finding and hiding columns in the tables of the statistics pages.
#include "tests/e2e/statisticstest.h"

namespace {

class SortedTables : public StatisticsTest {
  protected:
    // Of each client of the server, as the driver has them.
    struct Client {
        const char* mac;
        int state, vci, tx;
    };
    void serve(const std::vector<Client>& clients) {
        std::string commands = fmt::format("rows les 1.1 {}", clients.size());
        int row = 0;
        for (const Client& c : clients)
            commands += fmt::format("; set les 1.1 row {0} mac {1}; set les 1.1 row {0} state {2}; "
                                    "set les 1.1 row {0} controlVci {3}; set les 1.1 row {0} controlTx {4}",
                                    ++row, c.mac, c.state, c.vci, c.tx);
        ctl(commands);
    }
    // The numbers of the rows in the order that is shown.
    std::string order() {
        std::string numbers;
        for (const std::string& line : tableLines("clientTable"))
            if (line.front() != '|') numbers += (numbers.empty() ? "" : " ") + line.substr(0, line.find('|'));
        return numbers;
    }
    void expectOrder(const std::string& numbers) {
        expectSoon<std::string>([this] { return order(); }, numbers);
    }
    Widget cells() { return XtNameToWidget(onPage("clientTable"), "*cells"); }
    void clickLabel(int column) {
        zTable& clients = table("clientTable");
        int x = clients.columnWidth(column) / 2;
        for (int before = 0; before < column; ++before) x += clients.columnWidth(before);
        user->clickAt(cells(), x, 8);
    }
};

}  // namespace

TEST_F(SortedTables, RowsStaySortedAndChosenWhileTheyComeAndGo) {
    startOn("lesStats");
    const Client a{"00:00:00:00:00:0a", 3, 900, 70}, b{"00:00:00:00:00:09", 1, 1000, 9},
        c{"00:20:00:00:00:00", 3, 33, 700}, d{"00:00:00:00:00:10", 2, 100, 9};
    serve({a, b, c, d});
    expectRows("clientTable", 4);
    expectCell("clientTable", 4, 3, "700");
    const struct {
        int column;
        const char *up, *down;
    } sorts[] = {{1, "2 1 4 3", "3 4 1 2"},
                 {2, "1 3 2 4", "4 2 1 3"},
                 {3, "3 4 1 2", "2 1 4 3"},
                 {4, "2 4 1 3", "3 1 2 4"}};
    for (const auto& sort : sorts) {
        SCOPED_TRACE(sort.column);
        clickLabel(sort.column);
        EXPECT_EQ(order(), sort.up);
        clickLabel(sort.column);
        EXPECT_EQ(order(), sort.down);
        clickLabel(sort.column);
        EXPECT_EQ(order(), "1 2 3 4");
    }

    clickLabel(4);
    clickLabel(4);
    table("clientTable").setActiveCell({4, 2});  // b
    const auto active = [this] { return cell("clientTable", 1, table("clientTable").activeCell().row); };
    serve({c, a, d, b});
    expectOrder("1 2 3 4");
    EXPECT_EQ(active(), b.mac);
    serve({b, c});
    expectOrder("2 1");
    EXPECT_EQ(table("clientTable").activeCell(), (zTableLoc{4, 1}));
    serve({c, a});
    expectCell("clientTable", 1, 1, c.mac);
    EXPECT_EQ(table("clientTable").activeCell(), zTableLoc{});
    ctl("set les 1.1 state 0");
    expectRows("clientTable", 0);
    ctl("set les 1.1 state 1");
    serve({a, b, c});
    expectOrder("3 1 2");
    EXPECT_EQ(active(), b.mac);

    // What is sorted is what is shown: after Clear the growth since then.
    press("clear");
    ctl("set les 1.1 row 1 controlTx 71; set les 1.1 row 2 controlTx 19");
    expectOrder("2 1 3");
    undoClear();
    expectOrder("3 1 2");
}

TEST_F(SortedTables, ColumnsAreHiddenAndTextsFoundFromTheKeyboard) {
    startOn("lesStats");
    serve({{"00:00:00:00:00:0a", 3, 900, 70}, {"00:00:00:00:00:09", 1, 77, 9}});
    expectCell("clientTable", 3, 2, "  0/  77");
    zTable& clients = table("clientTable");
    clients.setActiveCell({2, 1});
    const auto choose = [this](const char* label) {
        XmProcessTraversal(cells(), XmTRAVERSE_CURRENT);
        user->key("Menu");
        WidgetList items = nullptr;
        Cardinal count = 0;
        XtVaGetValues(user->widget("menu"), XmNchildren, &items, XmNnumChildren, &count, nullptr);
        for (const Widget item : std::span(items, count)) {
            if (XUser::labelOf(item) == label) return user->key("Return");
            if (XtIsSensitive(item)) user->key("Down");
        }
        FAIL() << label;
    };
    choose("Hide Column");
    EXPECT_EQ(clients.activeCell().column, 3);
    EXPECT_EQ(clients.tabSeparated(1).substr(0, 30), "1\t00:00:00:00:00:0a\t  0/ 900\t7");
    choose("Show All Columns");
    EXPECT_EQ(clients.tabSeparated(1).substr(0, 26), "1\t00:00:00:00:00:0a\tActive");
    choose("Sort by This Column");
    EXPECT_EQ(order(), "2 1");

    clients.setActiveCell({1, 1});
    user->key("f", "Control_L");
    const Widget find = user->shellLike("Find");
    ASSERT_TRUE(find);
    user->focus(find);
    user->type("77");
    user->key("Return");
    EXPECT_EQ(clients.activeCell(), (zTableLoc{3, 2}));
    EXPECT_EQ(XUser::labelOf(user->widget("result")), "");
    user->type("8");
    user->key("Return");
    EXPECT_EQ(clients.activeCell(), (zTableLoc{3, 2}));
    EXPECT_EQ(XUser::labelOf(user->widget("result")), "No cell has \"778\" in it.");
    user->key("Escape");
    EXPECT_FALSE(user->shellLike("Find"));
    raise(dialog);
    user->key("g", "Control_L");
    ASSERT_TRUE(user->shellLike("Find")) << "to say that there is none";
    user->focus(user->shellLike("Find"));
    user->type("0a");
    user->key("Return");
    EXPECT_EQ(clients.activeCell(), (zTableLoc{1, 1}));
    raise(dialog);
    press("close");  // the window goes with its table's
    EXPECT_FALSE(user->shellLike("Find"));
}
