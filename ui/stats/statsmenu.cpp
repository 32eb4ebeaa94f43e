#include "ui/stats/statsmenu.h"

#include "toolkit/controls/edit.h"
#include "toolkit/table/table.h"
#include "ui/copymenu.h"

namespace {

template <class Control> void giveMenu(const zBoard& board, StatsPage& page) {
    board.forEach<Control>([&page](Control& control) {
        control.setMenu([&control, &page] {
            zMenuRows rows = copyMenu(control);
            rows.push_back({.label = "Undo Clear",
                            .action = [&page] { page.undoClear(); },
                            .enabled = page.canUndoClear()});
            return rows;
        });
    });
}

}  // namespace

void giveMenus(const zBoard& board, StatsPage& page) {
    giveMenu<zTable>(board, page);
    giveMenu<zEdit>(board, page);
}
