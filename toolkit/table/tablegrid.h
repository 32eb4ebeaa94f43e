// The geometry of a table: sizes, scrolling, visible cells. In pixels of the table's canvas; needs no window.
#pragma once

#include "toolkit/controls/layout.h"
#include "toolkit/table/tablemodel.h"

#include <vector>

class zTableGrid {
  public:
    // widths[0] is the width of the row labels; 0: none.
    std::vector<int> widths{0};
    int rows = 0;
    int rowHeight = 1, labelHeight = 1;

    int width() const { return viewWidth_; }
    int height() const { return viewHeight_; }
    int columns() const { return static_cast<int>(widths.size()) - 1; }

    // The size of the canvas. Scrolling is limited to the existing rows and columns, except that a table that
    // has lost all its rows keeps its position for the next ones.
    void setView(int width, int height);
    void scrollTo(int firstRow, int left);
    int firstRow() const { return firstRow_; }  // the first visible row, from 1
    int left() const { return left_; }          // pixels scrolled horizontally
    int wholeRows() const;                      // completely visible rows, at least 1
    int columnsWidth() const;                   // of all columns, without the row labels
    int columnsView() const;                    // visible part of columnsWidth()
    int lastRow() const;                        // the last row that is at least partly visible

    // The rectangle of a cell, and the visible part of it; without width or height if there is none.
    zRect cell(zTableLoc location) const;
    zRect visible(zTableLoc location) const;

    zTableLoc at(int x, int y) const;  // {0, 0}: no cell

    // The column with its right edge here, among the labels of the columns; -1: none.
    int edgeAt(int x, int y) const;

    // Scrolls as little as needed to show the cell. False if nothing moved.
    bool reveal(zTableLoc location);

  private:
    int columnLeft(int column) const;

    int viewWidth_ = 0, viewHeight_ = 0;
    int firstRow_ = 1, left_ = 0;
};
