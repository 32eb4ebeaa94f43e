#include "ui/copymenu.h"

#include "toolkit/controls/edit.h"
#include "toolkit/controls/listbox.h"
#include "toolkit/table/table.h"

zMenuRows copyMenu(zTable& table) {
    const zTableLoc active = table.activeCell();
    return {
        {.label = "Copy Cell",
         .action = [&table, active] { table.toClipboard(table.text(active)); },
         .enabled = active.row > 0},
        {.label = "Copy Row",
         .action = [&table, active] { table.toClipboard(table.tabSeparated(active.row)); },
         .enabled = active.row > 0},
        {.label = "Copy Table",
         .action = [&table] { table.toClipboard(table.tabSeparated()); },
         .keys = "Ctrl+C"},
    };
}

zMenuRows copyMenu(const zEdit& field) {
    return {{.label = "Copy Cell",
             .action = [&field] { field.toClipboard(field.text()); },
             .enabled = !field.text().empty()}};
}

zMenuRows copyMenu(const zListBox& list) {
    return {{.label = "Copy Row",
             .action = [&list] { list.toClipboard(list.line(list.selected())); },
             .enabled = list.selected() >= 0}};
}
