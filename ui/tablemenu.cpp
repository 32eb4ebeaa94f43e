#include "ui/tablemenu.h"

#include "toolkit/table/table.h"

zMenuRows viewMenu(zTable& table) {
    const int column = table.meantColumn();
    return {
        {.label = "Sort by This Column",
         .action = [&table, column] { table.sortFurther(column); },
         .enabled = table.canSort(column),
         .keys = "Ctrl+O"},
        {.label = "Hide Column",
         .action = [&table, column] { table.hideColumn(column); },
         .enabled = table.canHide(column)},
        {.label = "Show All Columns",
         .action = [&table] { table.showAllColumns(); },
         .enabled = table.hidesColumns()},
        {.label = "Find...", .action = [&table] { table.onFind(); }, .keys = "Ctrl+F"},
        {.label = "Find Next", .action = [&table] { table.onFindNext(); }, .keys = "Ctrl+G"},
    };
}
