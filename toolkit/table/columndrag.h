// The columns of a table can be dragged at their right edges, in the row of the labels. A double click there
// fits the column to its texts. Escape calls a drag off; other keys do nothing meanwhile. What the user has
// chosen counts for all tables of this layout row, also for those to come, while the program runs. Inside the
// toolkit only.
#pragma once

#include "toolkit/table/tablegrid.h"

#include <X11/Intrinsic.h>
#include <functional>
#include <optional>

class zColumnDrag {
  public:
    // `resize` gives a column this width in pixels; `fitted` is the width that its texts need.
    zColumnDrag(const zControlRow& kind, const zTableGrid& grid, std::function<int(int column)> fitted,
                std::function<void(int column, int width)> resize);
    ~zColumnDrag();
    zColumnDrag(const zColumnDrag&) = delete;
    zColumnDrag& operator=(const zColumnDrag&) = delete;

    // Of the table's canvas: a button that is pressed or released, or a motion. True: it was about an edge.
    bool event(Widget canvas, const XEvent& event);

    // The width that the user has chosen for this column.
    std::optional<int> chosen(int column) const;

  private:
    struct Keys;

    void press(Widget canvas, const XButtonEvent& event, int column);
    void choose(int column, int width);
    void callOff();
    void showCursor(Widget canvas, bool onEdge);

    const zControlRow& kind_;
    const zTableGrid& grid_;
    std::function<int(int)> fitted_;
    std::function<void(int, int)> resize_;
    int column_ = -1;  // the one that is dragged
    int from_ = 0;     // where its width would be 0
    int width_ = 0;    // what it had before
    std::optional<int> choice_;
    Widget canvas_ = nullptr;  // whose keys are listened to, from the first drag on
    int last_ = -1;            // the column of the last press
    Time lastPress_ = 0;
    bool cursorShown_ = false;
};
