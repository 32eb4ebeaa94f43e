// Steps in the statistics dialogs and what they show.
#pragma once

#include "tests/e2e/programtest.h"
#include "toolkit/table/table.h"

#include <Xm/TextF.h>
#include <Xm/ToggleB.h>

// The parts of a text between ';' and blanks.
inline Names split(const std::string& text) {
    std::istringstream in(text);
    Names parts;
    for (std::string part; std::getline(in >> std::ws, part, ';');) parts.push_back(part);
    return parts;
}

class StatisticsTest : public ProgramTest {
  protected:
    static constexpr int period = 20;  // milliseconds
    Widget dialog = nullptr;           // the one that the steps are about

    void SetUp() override {
        ProgramTest::SetUp();
        timerTime = period;
        advSettings = 1;
    }

    // A dialog with this page on top, over a simulator that does what the commands say.
    void startOn(const char* page, const std::string& commands = "") {
        start("1,2", split(commands));
        openDialog();
        turnTo(page);
    }
    void openDialog(const std::string& title = "Statistics ") {
        const Widget before = user->shellLike(title);
        raise(window->shell());
        user->click(window->control<zBitmapButton>(statsBTN).widget());
        if (before) raise(before);  // windows are found from the lowest up
        dialog = user->shellLike(title);
        ASSERT_TRUE(dialog && dialog != before) << title;
        backTo(dialog);
    }
    void backTo(Widget shell) {  // the steps are about it now
        dialog = shell;
        raise(shell);
    }
    // There is no window manager, and every window comes to the middle of the screen.
    void raise(Widget shell) {
        XRaiseWindow(XtDisplay(shell), XtWindow(shell));
        user->focus(shell);
    }

    Widget named(const std::string& name) {
        const Widget found = XtNameToWidget(dialog, ("*" + name).c_str());
        EXPECT_TRUE(found) << name;
        return found;
    }
    Widget onPage(const std::string& name) { return named(page_ + '*' + name); }
    void turnTo(const std::string& page) {
        ProgramTest::turnTo(named("pages"), named(page));
        page_ = page;
    }
    void press(const char* button) { user->click(named(button)); }
    void undoClear() {  // Clear with Shift
        XmProcessTraversal(named("clear"), XmTRAVERSE_CURRENT);
        user->key("space", "Shift_L");
    }
    void ctl(const std::string& commands) {
        for (const std::string& command : split(commands)) simulator->ctl(command);
    }
    template <class... Values>  // "state {}; mtu {}", 6, 2
    void set(const std::string& place, const std::string& fields, const Values&... values) {
        for (const std::string& field : split(fmt::format(fmt::runtime(fields), values...)))
            simulator->ctl("set " + place + ' ' + field);
    }

    // The text of a field or a caption; "lit", "unlit" or "greyed" for a lamp.
    std::string look(const std::string& name) {
        const Widget control = onPage(name);
        if (XmIsToggleButton(control))
            return !XtIsSensitive(control) ? "greyed" : XmToggleButtonGetState(control) ? "lit" : "unlit";
        return XmIsTextField(control) ? XUser::textOf(control) : XUser::labelOf(control);
    }
    // Every control looks so at the next ticks: "mtu=1516; stateLamp={}", "lit".
    template <class... Values> void expectLooks(const std::string& format, const Values&... values) {
        const std::string looks = fmt::format(fmt::runtime(format), values...);
        const auto actual = [&] {
            std::string found;
            for (const std::string& control : split(looks)) {
                const std::string name = control.substr(0, control.find('='));
                found += (found.empty() ? "" : "; ") + name + '=' + look(name);
            }
            return found;
        };
        expectSoon<std::string>(actual, looks);
    }

    // The line at the lower edge.
    std::string silence() { return XUser::labelOf(named("message")); }
    bool greyed(const std::string& name) { return !XtIsSensitive(onPage(name)); }
    // Of a table: nothing but its labels is as dark as a text.
    bool greyedTable(const std::string& name) {
        user->settle();
        const Widget cells = XtNameToWidget(onPage(name), "*cells");
        return user->darkest(cells, table(name).columnWidth(0), table(name).textHeight() + 8) > 70;
    }

    // Right after Clear.
    void expectZero(const std::string& looks) {
        for (const std::string& part : split(looks))
            EXPECT_EQ(look(part.substr(0, part.find('='))), "0") << part;
    }

    zTable& table(const std::string& name) { return XUser::tableIn(onPage(name)); }
    // Row labels and cells, separated by '|', with the column labels in front.
    Names tableLines(const std::string& name) {
        std::string all = table(name).tabSeparated();
        std::ranges::replace(all, '\t', '|');
        std::istringstream in(all);
        Names lines;
        for (std::string line; std::getline(in, line);) lines.push_back(line);
        return lines;
    }
    // What is shown becomes this within some ticks.
    template <class Value> void expectSoon(const std::function<Value()>& shown, const Value& value) {
        user->until([&] { return shown() == value; }, 2);
        EXPECT_EQ(shown(), value);
    }
    void expectTable(const std::string& name, const Names& lines) {
        expectSoon<Names>([&] { return tableLines(name); }, lines);
    }
    void expectRows(const std::string& name, int rows) {
        SCOPED_TRACE(name);
        expectSoon<int>([&] { return table(name).model().rows(); }, rows);
    }
    std::string cell(const std::string& name, int column, int row) { return table(name).text({column, row}); }
    // The client or server of this tab.
    void show(const char* tabs, int number) { user->clickAt(onPage(tabs), 65 * number - 35, 15); }
    void expectCell(const std::string& name, int column, int row, const std::string& text) {
        SCOPED_TRACE(fmt::format("{} {},{}", name, column, row));
        expectSoon<std::string>([&] { return cell(name, column, row); }, text);
    }

    void pass(double seconds) {
        user->until([] { return false; }, seconds);
    }
    void ticks() { pass(0.2); }  // some of them
    // The names of the requests since the log was read, each once.
    Names requestNames() {
        std::set<std::string> names;
        for (const auto& [name, unit] : loggedRequests()) names.insert(name);
        return {names.begin(), names.end()};
    }
    Names asked() {  // within some ticks
        loggedRequests();
        ticks();
        return requestNames();
    }

  private:
    std::string page_ = "signallingStats";
};
