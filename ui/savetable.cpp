#include "ui/savetable.h"

#include "platform/stream.h"
#include "toolkit/table/table.h"
#include "toolkit/window/filedialog.h"
#include "toolkit/window/messagebox.h"
#include "ui/tabletext.h"

#include <cerrno>
#include <cstring>

namespace {

// What is shown, in that order.
TableCells cellsOf(zTable& table) {
    TableCells cells{table.line(0), {}};
    for (int place = 1; place <= table.model().rows(); ++place)
        cells.rows.push_back(table.line(table.rowAt(place)));
    return cells;
}

void save(zApplication& application, zTable& table) {
    // As it stands now: it goes on changing while the name is asked for.
    const TableCells cells = cellsOf(table);
    const Widget control = table.outermost();
    const auto file = zAskForNewFile(application, control, "Save Table (.csv, .json, or text)", "table.csv");
    if (!file) return;
    const platform::HostPath place{*file};
    if (platform::saveWhole(place, tableText(cells, *file)) == 0) return;
    zMessageBox(application, zShellOf(control), zMessageStyle::warning,
                "The table was not saved:\n" + *file + ": " + std::strerror(errno), "Table Not Saved");
}

}  // namespace

zMenuRow saveTableRow(zApplication& application, zTable& table) {
    return {.label = "Save Table...", .action = [&application, &table] { save(application, table); }};
}
