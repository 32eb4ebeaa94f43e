// Conditions that the user waits for: asked for, raised and over, listed, and taken away.
#include "tests/e2e/statisticstest.h"
#include "tests/support/logsocket.h"
#include "toolkit/controls/contextmenu.h"
#include "ui/watch/watchmenu.h"

#include <X11/Xutil.h>

namespace {

constexpr metrics::Place adapter, lec1{metrics::Service::lec, 0, 0}, lecs{metrics::Service::lecs, 0, 0};

class Watching : public StatisticsTest {
  protected:
    std::optional<LogSocket> log;

    void begin(const std::string& commands) {
        log.emplace(root);
        start("1,2", split(commands));
    }

    // Opens "Watch for" as a menu's row does.
    void watchFor(const metrics::Subject& subject) {
        const zMenuRow row = watchForRow(application, subject);
        ASSERT_TRUE(row.enabled);
        row.action();
        user->until([&] { return user->shellLike("Watch for") != nullptr; });
        dialog = user->shellLike("Watch for");
        ASSERT_TRUE(dialog);
        user->focus(dialog);
        user->settle();
    }
    std::string text(int id) { return XUser::textOf(user->widget(id)); }

    // The lines about conditions since the last call, as soon as there is one, without who watches.
    Names logged() {
        Names lines;
        user->until(
            [&] {
                for (const std::string& line : log->takeLines())
                    if (line.starts_with("watch=")) lines.push_back(line.substr(0, line.find(" user=")));
                return !lines.empty();
            },
            3);
        return lines;
    }
    // Whether window managers are told that it is urgent, and the width of its icon.
    struct Call {
        bool urgent;
        unsigned long icon;
        bool operator==(const Call&) const = default;
    };
    Call callOf(Widget shell) {
        user->settle();
        XWMHints* hints = XGetWMHints(XtDisplay(shell), XtWindow(shell));
        const bool urgent = hints && (hints->flags & XUrgencyHint);
        XFree(hints);
        Atom type = 0;
        int format = 0;
        unsigned long count = 0, after = 0;
        unsigned char* bytes = nullptr;
        XGetWindowProperty(XtDisplay(shell), XtWindow(shell),
                           XInternAtom(XtDisplay(shell), "_NET_WM_ICON", False), 0, 1 << 16, False,
                           AnyPropertyType, &type, &format, &count, &after, &bytes);
        const auto* values = reinterpret_cast<const unsigned long*>(bytes);
        unsigned long sum = 0;
        for (unsigned long i = 0; i < count; ++i) sum = sum * 31 + values[i];
        XFree(bytes);
        return {urgent, sum};
    }
    // The list of conditions, row by row.
    Names conditions() {
        zTable& table = XUser::tableIn(user->widget(830));
        std::string all = table.tabSeparated();
        std::ranges::replace(all, '\t', '|');
        std::istringstream in(all);
        Names lines;
        for (std::string line; std::getline(in, line);) lines.push_back(line);
        return lines;
    }
    void openList() {
        raise(window->shell());
        user->key("l", "Control_L");
        ASSERT_TRUE(user->until([&] { return user->shellLike("Watched Conditions") != nullptr; }));
        raise(user->shellLike("Watched Conditions"));
        user->settle();
    }
};

TEST_F(Watching, AStateIsRaisedAndSeen) {
    begin("set lec 1.1 state 6");
    openDialog();
    const Widget statistics = dialog;
    const Call calm = callOf(statistics), mainCalm = callOf(window->shell());
    const std::string title = XUser::titleOf(statistics), mainTitle = XUser::titleOf(window->shell());

    watchFor(metrics::subjectOf(lec1, "", "state"));
    EXPECT_EQ(text(820), "adapter1/lec1.state");
    EXPECT_EQ(text(821), "State of the LAN Emulation Client.");
    EXPECT_EQ(text(822), "Joined");
    user->type("0");  // into the field that has the focus
    user->key("Escape");
    EXPECT_FALSE(user->shellLike("Watch for"));

    watchFor(metrics::subjectOf(lec1, "", "state"));
    XmProcessTraversal(user->widget(826), XmTRAVERSE_CURRENT);
    user->type("0");
    user->key("Return");  // is not Joined
    EXPECT_FALSE(user->shellLike("Watch for"));
    ticks();
    EXPECT_EQ(XUser::titleOf(statistics), title);
    ctl("set lec 1.1 state 3");
    EXPECT_EQ(
        logged(),
        (Names{"watch=raised value=adapter1/lec1.state condition=\"is not Joined\" hold=0 now=Joining"}));
    EXPECT_EQ(XUser::titleOf(statistics), "(!) adapter1/lec1.state is not Joined - " + title);
    EXPECT_EQ(XUser::titleOf(window->shell()), "(!) adapter1/lec1.state is not Joined - " + mainTitle);
    EXPECT_TRUE(callOf(statistics).urgent);
    EXPECT_NE(callOf(statistics).icon, calm.icon);
    EXPECT_EQ(callOf(statistics), callOf(window->shell()));

    // A window that is opened meanwhile calls, too.
    raise(window->shell());
    user->click(window->control<zBitmapButton>(statsBTN).widget());
    user->settle();
    std::size_t calling = 0;
    for (const unsigned long shown : shownWindows(XtDisplay(statistics)))
        calling +=
            titleOfWindow(XtDisplay(statistics), shown).starts_with("(!) adapter1/lec1.state ") ? 1 : 0;
    EXPECT_EQ(calling, 3U);

    openList();
    EXPECT_THAT(conditions(),
                testing::ElementsAre("State|Value|Condition|Now",
                                     testing::MatchesRegex("\\(!\\) raised ..:..:..[|]adapter1/lec1.state[|]"
                                                           "is not Joined[|]Joining")));
    user->click(user->widget(831));
    EXPECT_EQ(XUser::titleOf(statistics), title);
    EXPECT_EQ(callOf(statistics), calm);
    EXPECT_EQ(callOf(window->shell()), mainCalm);
    EXPECT_THAT(conditions()[1], testing::StartsWith("raised "));
    user->click(user->widget(832));
    EXPECT_EQ(conditions().size(), 1U);
    EXPECT_FALSE(XtIsSensitive(user->widget(832)));
    user->key("Escape");
    EXPECT_FALSE(user->shellLike("Watched Conditions"));
}

TEST_F(Watching, GoesOnWithoutAStatisticsWindow) {
    begin("set adapter 1 rxFrameErrors1 5");
    openDialog();
    watchFor(metrics::subjectOf(adapter, "", "rxFrameErrors"));
    XmProcessTraversal(user->widget(826), XmTRAVERSE_CURRENT);
    user->type("0");
    user->click(user->widget(706));  // above 0 errors/s
    user->askToClose(user->shellLike("Statistics "));
    user->settle();
    EXPECT_FALSE(user->shellLike("Statistics "));
    ticks();
    ctl("set adapter 1 rxFrameErrors1 9");
    const Names lines = logged();
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_THAT(lines[0], testing::StartsWith("watch=raised value=adapter1.rxFrameErrors/s "
                                              "condition=\"above 0 errors/s\" hold=0 now=\""));
    EXPECT_THAT(XUser::titleOf(window->shell()),
                testing::StartsWith("(!) adapter1.rxFrameErrors/s above 0 errors/s - "));
    ticks();
    openList();
    EXPECT_THAT(conditions()[1], testing::EndsWith("|0 errors/s"));
    simulator.reset();
    expectSoon<bool>([&] { return conditions()[1].find("|0 errors/s") == std::string::npos; }, true);
    EXPECT_THAT(conditions()[1], testing::StartsWith("(!) raised ")) << "unknown is not over";
}

TEST_F(Watching, TheDialogHasAFormForEachKindOfValue) {
    begin("set lec 1.1 state 6; set lecs 1 state 4; set lecs 1 open 3");
    const struct {
        metrics::Subject subject;
        const char *now, *number;  // a default, if it has a field for one
    } rows[] = {
        {metrics::subjectOf(adapter, "", "rxCells"), "0 cells/s", "0"},
        {metrics::subjectOf(lec1, "", "running"), "on", nullptr},
        {metrics::subjectOf(lecs, "", "connectionsOpen"), "3 connections", "3"},
        {metrics::subjectOf(adapter, "circuits", "rxFrames", "999"), "the table has no such row", "0"},
    };
    for (const auto& row : rows) {
        watchFor(row.subject);
        EXPECT_EQ(text(820), nameOf(row.subject));
        expectSoon<std::string>([&] { return text(822); }, row.now);
        EXPECT_EQ(user->widget(824) ? text(824) : "none", row.number ? row.number : "none");
        EXPECT_EQ(text(826), "10");
        if (row.number) {
            for (const char* threshold : {"1,5", "-5", "nan", "1e999", ""}) {
                XmTextFieldSetString(user->widget(824), const_cast<char*>(threshold));
                user->key("Return");
                ASSERT_TRUE(user->shellLike("Watch for")) << threshold;
                EXPECT_THAT(XUser::labelOf(named("message")), testing::StartsWith("A threshold is"))
                    << threshold;
            }
            XmTextFieldSetString(user->widget(824), const_cast<char*>(row.number));
        }
        // Too long a time is not taken, and the line says why.
        XmProcessTraversal(user->widget(826), XmTRAVERSE_CURRENT);
        user->type("3601");
        user->key("Return");
        ASSERT_TRUE(user->shellLike("Watch for"));
        EXPECT_EQ(XUser::labelOf(named("message")), "At most 3600 seconds.");
        user->key("a", "Control_L");
        user->type("3600");
        EXPECT_EQ(XUser::labelOf(named("message")), "");
        user->key("Return");
        EXPECT_FALSE(user->shellLike("Watch for"));
    }
    openList();
    EXPECT_THAT(conditions(),
                testing::ElementsAre(
                    testing::_, testing::StartsWith("waiting|adapter1.rxCells/s|above 0 cells/s for 60 min|"),
                    testing::EndsWith("running|is off for 60 min|on"),
                    testing::EndsWith("connectionsOpen|above 3 connections for 60 min|3 connections"),
                    testing::MatchesRegex("unknown[|].*[|]above 0 frames/s for 60 min[|]the table .*")));
    EXPECT_EQ(XUser::cutTexts(XUser::tableIn(user->widget(830))), nothing);
}

TEST_F(Watching, ValuesWithoutAFieldAreChosen) {
    begin("set adapter 1 link 1; set adapter 1 valid 1");
    EXPECT_FALSE(watchForRow(application, std::nullopt).enabled);
    EXPECT_FALSE(watchForRow(application, metrics::subjectOf(adapter, "", "mac")).enabled);
    watchForAny(application, adapter);
    ASSERT_TRUE(user->until([&] { return user->shellLike("Watch") != nullptr; }));
    user->focus(user->shellLike("Watch"));
    user->settle();
    user->key("Down");  // behind the kind of the link
    user->key("Return");
    ASSERT_TRUE(user->shellLike("Watch for"));
    EXPECT_EQ(text(820), "adapter1.linkDown");
    EXPECT_EQ(text(822), "off");
    user->focus(user->shellLike("Watch for"));
    XmProcessTraversal(user->widget(826), XmTRAVERSE_CURRENT);
    user->type("0");
    user->key("Return");
    ctl("set adapter 1 linkAlarm 1");
    EXPECT_EQ(logged(), (Names{"watch=raised value=adapter1.linkDown condition=\"is on\" hold=0 now=on"}));
    ctl("set adapter 1 linkAlarm 0");
    ticks();
    EXPECT_THAT(XUser::titleOf(window->shell()), testing::StartsWith("(!) ")) << "not over yet";
}

}  // namespace
