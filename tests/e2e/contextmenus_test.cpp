#include "tests/e2e/statisticstest.h"
#include "ui/config/confids.h"

#include <X11/keysym.h>

namespace {

class ContextMenus : public StatisticsTest {
  protected:
    // Opens the menu of a control with the Menu key; its rows, those that are greyed in brackets.
    Names menuOf(Widget control) {
        XmProcessTraversal(control, XmTRAVERSE_CURRENT);
        user->key("Menu");
        const Widget menu = user->widget("menu");
        if (!menu) return nothing;
        Names labels;
        WidgetList items = nullptr;
        Cardinal count = 0;
        XtVaGetValues(menu, XmNchildren, &items, XmNnumChildren, &count, nullptr);
        for (const Widget item : std::span(items, count)) {
            const std::string label = XUser::labelOf(item);
            labels.push_back(XtIsSensitive(item) ? label : '(' + label + ')');
        }
        return labels;
    }
    // What is on the clipboard after the row of the menu that is open has been chosen.
    std::string copied(int row) {
        for (int i = 1; i < row; ++i) user->key("Down");
        user->key("Return");
        return user->clipboard();
    }
};

TEST_F(ContextMenus, CountersAndTablesAreCopiedAndClearIsUndone) {
    startOn("aal5Stats", "set adapter 1 rxPackets 1005; set vc 1 row 1 vci 16; set vc 1 row 1 rxPackets 7; "
                         "set vc 1 row 1 txPackets 8; set vc 1 row 2 vci 5; set vc 1 row 2 rxPackets 9; "
                         "set vc 1 row 2 txPackets 10");
    expectLooks("rxPackets=1005");
    const std::string rates = "; Show Rates; (Smooth Rates (10 s))",
                      counter = rates + "; Plot; (Add to Plot); Watch for...; Watched Conditions...",
                      noCounter = rates + "; (Plot); (Add to Plot); (Watch for...); Watched Conditions...";
    const Widget field = onPage("rxPackets");
    EXPECT_EQ(menuOf(field), split("Copy Cell; (Undo Clear)" + counter));
    EXPECT_EQ(copied(1), "1005");
    press("clear");
    expectLooks("rxPackets=0");
    EXPECT_EQ(menuOf(field), split("Copy Cell; Undo Clear" + counter));
    EXPECT_EQ(copied(2), "1005") << "as before";
    expectLooks("rxPackets=1005");

    turnTo("signallingStats");
    expectCell("signallingTable", 2, 1, "7");
    zTable& frames = table("signallingTable");
    const std::string view = "; Find...; Find Next; (Undo Clear)";
    EXPECT_EQ(
        menuOf(frames.widget()),
        split("(Copy Cell); (Copy Row); Copy Table; Save Table...; (Sort by This Column); (Hide Column); "
              "(Show All Columns)" +
              view + noCounter));
    EXPECT_EQ(copied(1), frames.tabSeparated());
    frames.setActiveCell({3, 2});
    const Names all = split("Copy Cell; Copy Row; Copy Table; Save Table...; (Sort by This Column); "
                            "Hide Column; (Show All Columns)" +
                            view + counter);
    EXPECT_EQ(menuOf(frames.widget()), all);
    EXPECT_EQ(copied(1), "10");
    menuOf(frames.widget());
    EXPECT_EQ(copied(2), "Signalling\t  0/   5\t9\t10");
    press("close");
    EXPECT_EQ(user->clipboard(), "Signalling\t  0/   5\t9\t10") << "without its window";
}

TEST_F(ContextMenus, ATableIsSaved) {
    startOn("aal5Stats", "set vc 1 row 1 vci 16; set vc 1 row 1 rxPackets 7; set vc 1 row 2 vci 5");
    turnTo("signallingStats");
    expectCell("signallingTable", 2, 1, "7");
    zTable& frames = table("signallingTable");
    const auto save = [&](const char* file, bool replaces, bool works) {
        menuOf(frames.widget());
        user->key("Down");  // the first row that can be chosen is Copy Table
        std::size_t boxes = 0;
        inDialog("Save Table (.csv, .json, or text)", [&] {
            const std::string name = *file == '/' ? root.at(file).string() : file;
            XmTextFieldSetString(user->widget("Text"), const_cast<char*>(name.c_str()));
            if (replaces) inDialog("Replace File", [&] { ++boxes, user->key("Return"); });
            if (!works) inDialog("Not Saved Yet", [&] { ++boxes, user->key("Return"); });
            user->key("Return");
            if (works) return;
            user->focus(user->shellLike("Save Table"));
            user->key("Escape");
        });
        user->key("Return");
        EXPECT_EQ(boxes, replaces + !works) << file;
    };
    save("/table.csv", false, true);
    const std::string csv = root.read("/table.csv");
    EXPECT_THAT(csv, testing::HasSubstr(",0/  16,7,"));
    root.write("/table.csv", "before");
    root.write("/table.csv.new", "precious");
    ASSERT_EQ(::chmod(root.at("/table.csv").c_str(), 0600), 0);
    save("/table.csv", true, true);
    EXPECT_EQ(root.read("/table.csv"), csv);
    EXPECT_EQ(std::filesystem::status(root.at("/table.csv")).permissions(), std::filesystem::perms(0600));
    EXPECT_EQ(root.read("/table.csv.new"), "precious");
    save("/table", false, true);
    EXPECT_EQ(root.read("/table"), frames.tabSeparated());
    save("in the shown directory", false, true);
    EXPECT_EQ(root.read("/in the shown directory"), frames.tabSeparated());
    ASSERT_EQ(::mkfifo(root.at("/pipe").c_str(), 0600), 0);
    for (const char* file : {"/nowhere/table.json", "/pipe", "/two\nlines", "", "/"})
        save(file, false, false);
    EXPECT_FALSE(root.exists("/nowhere"));
    EXPECT_TRUE(std::filesystem::is_fifo(root.at("/pipe")));
}

TEST_F(ContextMenus, TheFileDialogHasHelpAndRefusesWhatItCannotTake) {
    startOn("aal5Stats", "");
    turnTo("signallingStats");
    menuOf(table("signallingTable").widget());
    user->key("Down");
    KeySym foreign[] = {XK_udiaeresis, XK_Udiaeresis};
    Display* const display = XtDisplay(window->shell());
    XChangeKeyboardMapping(display, 250, 2, foreign, 1);
    user->until([&] { return XKeysymToKeycode(display, XK_udiaeresis) == 250; }, 3);
    bool help = false, refused = false;
    inDialog("Save Table (.csv, .json, or text)", [&] {
        inDialog("Tarvolin Manual", [&] { help = true, user->key("Escape"); });
        user->key("F1");
        user->focus(user->shellLike("Save Table"));
        inDialog("Not Saved Yet", [&] { refused = true, user->key("Return"); });
        user->key("udiaeresis");
        user->focus(user->shellLike("Save Table"));
        user->key("Escape");
    });
    user->key("Return");
    EXPECT_TRUE(help);
    EXPECT_TRUE(refused);
}

TEST_F(ContextMenus, TheAdapterListIsCopiedAndRescanned) {
    start("1,2");
    EXPECT_EQ(menuOf(list().widget()), (Names{"Copy Row", "Rescan", "Watched Conditions..."}));
    EXPECT_EQ(copied(1), list().line(0));
    const std::size_t before = lines().size();
    startDriver("1,2,3");
    menuOf(list().widget());
    copied(2);
    EXPECT_EQ(lines().size(), before + 1);
}

TEST_F(ContextMenus, TablesOfModalDialogsHaveThem) {
    start();
    configure([this] {
        ProgramTest::turnTo(user->widget(pagesNB), user->widget("ip1577Page"));
        zTable& pvcs = XUser::tableIn(user->widget(pvcTBL));
        EXPECT_EQ(menuOf(pvcs.widget()), (Names{"(Copy Cell)", "(Copy Row)", "Copy Table"}));
        EXPECT_EQ(copied(1), pvcs.tabSeparated());
        user->key("Escape");
    });
}

TEST_F(StatisticsTest, AClearThatWasNotDoneIsNotTheOneThatIsTakenBack) {
    startOn("aal5Stats", "set adapter 1 rxPackets 1000");
    press("clear");
    expectLooks("rxPackets=0");
    ctl("set adapter 1 rxPackets 1005");
    expectLooks("rxPackets=5");
    ctl("fault adapter.aal every resp 5");
    press("clear");
    ctl("fault clear");
    for (int times = 0; times < 2; ++times) {
        undoClear();
        expectLooks("rxPackets=1005");
    }
    user->key("Return");  // on Clear, which has the focus
    expectLooks("rxPackets=0");
    undoClear();
    expectLooks("rxPackets=1005");
}

}  // namespace
