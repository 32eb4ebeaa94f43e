#include "ui/mytable.h"

#include "model/settings.h"
#include "platform/index.h"
#include "ui/copymenu.h"

#include <algorithm>

myTable::myTable(zTable& table) : table_(table) {
    table_.setFont(tblFontSpec);
    table_.setMenu([this] { return copyMenu(table_); });
}

void myTable::SetCellText(zTableLoc location, std::string_view text) {
    const zTableModel& model = table_.model();
    if (location.column > model.columns() || location.row > model.rows())
        table_.resize(std::max(location.column, model.columns()), std::max(location.row, model.rows()));
    table_.setText(location, text);
}

void myTable::resize(int columns, int rows) {
    table_.resize(columns, rows);
}

void myTable::setColumns(std::span<const char* const> labels, std::span<const char* const> samples) {
    resize(static_cast<int>(labels.size()), table_.model().rows());
    int column = 0;
    for (const char* label : labels) {
        ++column;
        table_.setText({column, 0}, label);
        table_.fitColumn(column, {label, samples[asIndex(column) - 1]});
    }
}

void myTable::setRowNumbers(const char* sample) {
    table_.numberRows(true);
    table_.fitColumn(0, {sample});
}
