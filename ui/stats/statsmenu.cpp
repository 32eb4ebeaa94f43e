#include "ui/stats/statsmenu.h"

#include "toolkit/controls/edit.h"
#include "toolkit/table/table.h"
#include "ui/copymenu.h"
#include "ui/finddialog.h"
#include "ui/savetable.h"
#include "ui/tablemenu.h"

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

template <class Control> void giveMenu(zApplication& application, const zBoard& board, StatsPage& page) {
    board.forEach<Control>([&application, &page](Control& control) {
        control.setMenu([&control, &application, &page] {
            zMenuRows rows = copyMenu(control);
            addSaving(application, control, rows);
            rows.push_back({.label = "Undo Clear",
                            .action = [&page] { page.undoClear(); },
                            .enabled = page.canUndoClear()});
            addRates(page, rows);
            return rows;
        });
    });
}

}  // namespace

void giveMenus(zApplication& application, const zBoard& board, StatsPage& page) {
    giveMenu<zTable>(application, board, page);
    board.forEach<zTable>([&application](zTable& table) { offerFinding(application, table); });
    giveMenu<zEdit>(application, board, page);
}
