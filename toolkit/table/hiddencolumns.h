// Which columns of a table the user has hidden. The choice counts for all tables of this layout row that are
// made later, while the program runs. Inside the toolkit only.
#pragma once

#include "toolkit/controls/layout.h"

#include <set>

class zHiddenColumns {
  public:
    explicit zHiddenColumns(const zControlRow& kind);

    bool has(int column) const { return columns_.contains(column); }
    int among(int columns) const;  // how many of the first ones
    void hide(int column);
    void showAll();

  private:
    const zControlRow& kind_;
    std::set<int> columns_;
};
