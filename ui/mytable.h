// Read-only tables of text cells.
#pragma once

#include "toolkit/table/table.h"

#include <span>
#include <string_view>

class myTable {
  public:
    // Wraps a table of a layout, which must outlive this object.
    explicit myTable(zTable& table);
    virtual ~myTable() = default;

    // The only way to write a cell. The table grows if it has no such cell. Setting the same text again costs
    // nothing.
    void SetCellText(zTableLoc location, std::string_view text);

    void resize(int columns, int rows);
    void setActiveCell(zTableLoc location) { table_.setActiveCell(location); }
    zTableLoc activeCell() const { return table_.activeCell(); }
    zTable& table() const { return table_; }

  protected:
    // Sets the column labels. A column is as wide as its label or its sample, whichever is wider.
    void setColumns(std::span<const char* const> labels, std::span<const char* const> samples);

    // Shows row numbers in a column as wide as the sample.
    void setRowNumbers(const char* sample);

  private:
    zTable& table_;
};
