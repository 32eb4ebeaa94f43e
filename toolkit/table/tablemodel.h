// The texts of a table.
#pragma once

#include <string>
#include <string_view>
#include <vector>

// A cell of a table. Rows and columns count from 1; row 0 holds the labels of the columns, column 0 those of
// the rows.
struct zTableLoc {
    int column = 0, row = 0;

    bool operator==(const zTableLoc&) const = default;
};

// At most 65,535 rows and 64 columns; sizes are cut to that. A row is one string, empty until a cell of it is
// set, so that tables with many rows stay small.
class zTableModel {
  public:
    static constexpr int mostRows = 65535, mostColumns = 64;

    int columns() const { return columns_; }
    int rows() const { return static_cast<int>(rows_.size()) - 1; }

    // Remaining cells keep their texts; new ones are empty.
    void resize(int columns, int rows);

    // False if the cell has this text already or does not exist.
    bool set(zTableLoc location, std::string_view text);

    // Empty if there is no such cell. Valid until the row is changed.
    std::string_view text(zTableLoc location) const;

  private:
    bool has(zTableLoc location) const;

    int columns_ = 0;
    std::vector<std::string> rows_{1};  // each: cells separated by NULs, label first
};
