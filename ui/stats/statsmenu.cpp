#include "ui/stats/statsmenu.h"

#include "toolkit/controls/edit.h"
#include "toolkit/controls/lamp.h"
#include "toolkit/table/table.h"
#include "ui/copymenu.h"
#include "ui/finddialog.h"
#include "ui/plot/plotwindows.h"
#include "ui/savetable.h"
#include "ui/tablemenu.h"
#include "ui/watch/watchmenu.h"

#include <string_view>

namespace {

void addSaving(zApplication& application, zTable& table, zMenuRows& rows) {
    rows.push_back(saveTableRow(application, table));
    for (zMenuRow& row : viewMenu(table)) rows.push_back(std::move(row));
}
void addSaving(zApplication&, zEdit&, zMenuRows&) {}

// What the page shows of its counters.
void addRates(StatsPage& page, zMenuRows& rows) {
    const bool rates = page.showsRates(), smoothed = page.smoothsRates();
    rows.push_back({.label = rates ? "Show Totals" : "Show Rates",
                    .action = [&page, rates] { page.showRates(!rates); },
                    .keys = ratesKey});
    rows.push_back({.label = smoothed ? "Do Not Smooth Rates" : "Smooth Rates (10 s)",
                    .action = [&page, smoothed] { page.smoothRates(!smoothed); },
                    .enabled = rates,
                    .keys = smoothKey});
}

// What can be done with the value itself.
void addPlotting(zApplication& application, const std::optional<metrics::Subject>& subject, zMenuRows& rows) {
    const bool plots = canPlot(subject);
    rows.push_back({.label = "Plot",
                    .action = [&application, subject] { PlotWindows::of(application)->plot(*subject); },
                    .enabled = plots,
                    .keys = plotKey});
    rows.push_back({.label = "Add to Plot",
                    .action = [&application, subject] { PlotWindows::of(application)->add(*subject); },
                    .enabled = plots && PlotWindows::of(application)->canAdd(*subject),
                    .keys = addKey});
}
void addWatching(zApplication& application, const std::optional<metrics::Subject>& subject, zMenuRows& rows) {
    rows.push_back(watchForRow(application, subject, watchKey));
    rows.push_back(watchedConditionsRow(application));
}

template <class Control> void giveMenu(zApplication& application, const zBoard& board, StatsPage& page) {
    board.forEach<Control>([&application, &page](Control& control) {
        control.setMenu([&control, &application, &page] {
            zMenuRows rows = copyMenu(control);
            addSaving(application, control, rows);
            rows.push_back({.label = "Undo Clear",
                            .action = [&page] { page.undoClear(); },
                            .enabled = page.canUndoClear()});
            addRates(page, rows);
            const auto subject = page.subjectIn(control);
            addPlotting(application, subject, rows);
            addWatching(application, subject, rows);
            return rows;
        });
    });
}

}  // namespace

void giveMenus(zApplication& application, const zBoard& board, StatsPage& page) {
    giveMenu<zTable>(application, board, page);
    board.forEach<zTable>([&application](zTable& table) { offerFinding(application, table); });
    giveMenu<zEdit>(application, board, page);
    board.forEach<zLamp>([&](zLamp& lamp) {
        lamp.setMenu([&application, &page, &lamp] {
            zMenuRows rows;
            addWatching(application, page.subjectIn(lamp), rows);
            return rows;
        });
    });
}

void watchFocused(zApplication& application, const StatsPage& page, const char* keys) {
    const zControl* control = page.focused();
    const auto subject = control ? page.subjectIn(*control) : std::nullopt;
    // Lamps do not take the focus.
    if (!subject && std::string_view(keys) == watchKey) return watchForAny(application, page.place());
    zMenuRows rows;
    addPlotting(application, subject, rows);
    addWatching(application, subject, rows);
    for (const zMenuRow& row : rows)
        if (std::string_view(row.keys) == keys && row.enabled) return row.action();
}
