// Where the cells of a table stand: sizes, scrolling, and what is visible. In pixels of the table's canvas, without a
// window.
#pragma once

#include "toolkit/controls/layout.h"
#include "toolkit/table/tablemodel.h"

#include <vector>

class zTableGrid {
  public:
    // widths[0] is that of the row labels, 0 for none.
    std::vector<int> widths{0};
    int rows = 0;
    int rowHeight = 1, labelHeight = 1;

    int width() const { return viewWidth_; }
    int height() const { return viewHeight_; }
    int columns() const { return static_cast<int>(widths.size()) - 1; }

    // The canvas. Scrolling stays within what there is; a table without rows keeps the place for those that come back.
    void setView(int width, int height);
    void scrollTo(int firstRow, int left);
    int firstRow() const { return firstRow_; }  // the row below the labels, from 1
    int left() const { return left_; }          // pixels of the columns that are scrolled out
    int wholeRows() const;                      // rows that fit, at least 1
    int columnsWidth() const;                   // of all columns, without the row labels
    int columnsView() const;                    // what of that can be seen at a time
    int lastRow() const;                        // the last one of which something is seen

    // A cell's rectangle, and the part of it that can be seen; no width or height: nothing.
    zRect cell(zTableLoc location) const;
    zRect visible(zTableLoc location) const;

    zTableLoc at(int x, int y) const;  // {0, 0}: no cell

    // Scrolls as little as needed. False when nothing moved.
    bool reveal(zTableLoc location);

  private:
    int columnLeft(int column) const;

    int viewWidth_ = 0, viewHeight_ = 0;
    int firstRow_ = 1, left_ = 0;
};
