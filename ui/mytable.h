// Read-only tables of status values: text cells.
#pragma once

#include "toolkit/table/table.h"

#include <span>
#include <string_view>

class myTable {
  public:
    // Dresses a table of a layout; it must outlive this object.
    explicit myTable(zTable& table);
    virtual ~myTable() = default;

    // The only way to write a cell. The text that stands already costs nothing; a cell that is not there yet is
    // made.
    void SetCellText(zTableLoc location, std::string_view text);

    void resize(int columns, int rows);
    void setActiveCell(zTableLoc location) { table_.setActiveCell(location); }
    zTableLoc activeCell() const { return table_.activeCell(); }
    zTable& table() const { return table_; }

  protected:
    // Labels of the columns. Each column is as wide as its sample or its label, whichever is wider.
    void setColumns(std::span<const char* const> labels, std::span<const char* const> samples);

    // Numbers beside the rows, as wide as the sample.
    void setRowNumbers(const char* sample);

  private:
    zTable& table_;
};
