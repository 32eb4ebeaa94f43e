#include "ui/stats/statsmenu.h"

#include "toolkit/controls/edit.h"
#include "toolkit/table/table.h"
#include "ui/copymenu.h"
#include "ui/savetable.h"

namespace {

void addSaving(zApplication& application, zTable& table, zMenuRows& rows) {
    rows.push_back(saveTableRow(application, table));
}
void addSaving(zApplication&, zEdit&, zMenuRows&) {}

template <class Control> void giveMenu(zApplication& application, const zBoard& board, StatsPage& page) {
    board.forEach<Control>([&application, &page](Control& control) {
        control.setMenu([&control, &application, &page] {
            zMenuRows rows = copyMenu(control);
            addSaving(application, control, rows);
            rows.push_back({.label = "Undo Clear",
                            .action = [&page] { page.undoClear(); },
                            .enabled = page.canUndoClear()});
            return rows;
        });
    });
}

}  // namespace

void giveMenus(zApplication& application, const zBoard& board, StatsPage& page) {
    giveMenu<zTable>(application, board, page);
    giveMenu<zEdit>(application, board, page);
}
