// Tables: read-only text cells with labels, scroll bars, and one active cell whose row is highlighted.
//
// Rows and columns have the numbers that their owner gives them. The user may see the rows sorted, and not
// all of the columns; what is copied and saved is what is shown.
//
// Setting the text that a cell has already costs nothing. Visible cells that changed are painted once, when
// the event loop runs again. The active cell follows mouse and keyboard; Ctrl+C copies labels and rows to the
// clipboard as tab-separated text.
#pragma once

#include "platform/index.h"
#include "toolkit/controls/control.h"
#include "toolkit/display/alarm.h"
#include "toolkit/table/columndrag.h"
#include "toolkit/table/roworder.h"
#include "toolkit/table/tablegrid.h"
#include "toolkit/table/tablemodel.h"
#include "toolkit/table/tablepaint.h"

#include <array>
#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

class zTable : public zControl {
  public:
    zTable(Widget board, const zRect& place, const zControlRow& row);
    ~zTable() override;

    Widget outermost() const override { return container_; }
    void place(const zRect& place) override;
    void enable(bool on) override;
    void grey(bool on) override;  // the texts; the table can be scrolled and copied as before
    void realized() override;

    // See zTableModel. New columns are wide enough for ten digits.
    const zTableModel& model() const { return model_; }
    void resize(int columns, int rows);
    bool setText(zTableLoc location, std::string_view text);

    // What the owner of the rows is asked. Each function stays in use until it is replaced, also by an empty
    // one.
    //
    // Rows that are written on demand: after rowsChanged(), which says that the texts and keys of all rows
    // may have changed, `write` is called once for each row when it is visible, becomes visible, or is read
    // by text(), find() or Ctrl+C. It writes the row with setText() and does nothing else to the table.
    void writeOnDemand(std::function<void(int row)> write) { write_ = std::move(write); }
    // Gives find() what `write` would write, so that a search through many rows leaves them unwritten.
    void readUnwritten(std::function<std::string(zTableLoc)> read) { read_ = std::move(read); }
    // Lets the user sort by any column; to be called when the labels are set. The keys are asked for in
    // rowsChanged(), and when the user sorts.
    void sortable(std::function<zSortKey(zTableLoc)> keyOf);
    // Tells the rows apart: in rowsChanged() the active cell goes with its row. While that is not there, no
    // cell is active.
    void nameRows(std::function<zSortKey(int row)> nameOf) { nameOf_ = std::move(nameOf); }
    void rowsChanged();
    std::string text(zTableLoc location);  // as shown

    // Sorted rows stay sorted as they change. Those with equal keys stand as the owner has them.
    struct Sorting {
        int column = 0;  // 0: as the owner has them
        bool descending = false;

        bool operator==(const Sorting&) const = default;
    };
    bool canSort(int column) const { return keyOf_ && column > 0 && column <= grid_.columns(); }
    void sortBy(Sorting sorting);
    Sorting sorting() const { return sorting_; }
    void sortFurther(int column);  // up, down, not at all: as a click on its label does
    int rowAt(int place) const { return order_.rowAt(place); }  // the row that is shown there, from 1

    // At least one column stays.
    bool canHide(int column) const;
    void hideColumn(int column);
    void showAllColumns();
    bool isHidden(int column) const { return hidden_.contains(column); }
    bool hidesColumns() const { return hiddenAmong(grid_.columns()) > 0; }

    // Makes the next cell with this text in it the active one, as the user does: in the order that is shown,
    // from behind the active cell, and after the last cell from the first. Upper and lower case of letters
    // are the same. False if there is none.
    bool find(std::string_view text);

    // In pixels; of a hidden column 0. Column 0 has the row labels; it is hidden at width 0. A width that the
    // user has chosen (columndrag.h) stays.
    void setColumnWidth(int column, int width);
    void fitColumn(int column, std::initializer_list<std::string_view> texts);  // to the widest text
    int columnWidth(int column) const { return grid_.widths[asIndex(column)]; }
    void numberRows(bool on);  // the row labels show the row numbers

    void setFont(const std::string& pattern);  // see zTablePaint; does not change column widths
    zFont font() const { return paint_->font(); }
    int textWidth(std::string_view text) const { return paint_->textWidth(text); }
    int textHeight() const { return paint_->textHeight(); }

    // {0, 0}: none. Scrolls to the cell; does not call onActiveChange.
    void setActiveCell(zTableLoc location);
    zTableLoc activeCell() const { return active_; }

    int meantColumn() const;  // that of the label where the menu came up, or else of the active cell; 0: none

    std::function<void()> onActiveChange;      // the user has moved the active cell
    std::function<void()> onFind, onFindNext;  // Ctrl+F, Ctrl+G

    // What is shown of a row, its label first if the table shows them; row 0: the labels of the columns.
    std::vector<std::string> line(int row);
    // With tabs between them: the column labels, if there are any, and the rows in the order that is shown,
    // as Ctrl+C copies them; or one row, which ends without a new line.
    std::string tabSeparated();
    std::string tabSeparated(int row);

  protected:
    void point(int x, int y) override;  // the cell becomes the active one
    zRect selectedPlace() const override { return grid_.visible(placeOf(active_)); }

  private:
    struct Handlers;

    // The grid's rows are places, its columns those of the model.
    zTableLoc placeOf(zTableLoc location) const { return {location.column, order_.placeOf(location.row)}; }
    zTableLoc locationAt(zTableLoc place) const { return {place.column, order_.rowAt(place.row)}; }

    int hiddenAmong(int columns) const;  // of the first ones
    std::string textOf(zTableLoc location) const;
    bool unwritten(int row) const;
    void writeRow(int row);
    void writePlaces(int first, int last);
    void widen(int column, int width);
    void setWidths();
    int labelWidth(int column) const;
    int fittedWidth(int column);
    void layOut();
    void arrange();
    void updateScrollBars();
    void scrollTo(int firstRow, int left);
    void changed(zTableLoc location);
    void changedRow(int row);
    void changedPlace(zTableLoc place);
    void changedPlaces(int row);
    void changedAll();
    void flush();
    void paintCell(zTableLoc place);
    template <class Change> void moveRows(const Change& change);
    void sort();
    void followRow();
    void noteActive();
    std::vector<int> shownColumns() const;
    void moveTo(zTableLoc location);
    void moveBy(int columns, int rows);
    zTableLoc beginning() const;
    bool contains(zTableLoc location, std::string_view wanted) const;
    void reveal();
    void showFocus(bool on);
    std::array<zRect, 4> ringSides() const;
    void drawRing() const;

    zRect place_;
    Widget container_, frame_, vertical_, horizontal_;
    std::unique_ptr<zTablePaint> paint_;
    zTableModel model_;
    zTableGrid grid_;
    std::vector<int> widths_{0};  // of all columns, as if none were hidden
    zRowOrder order_;
    Sorting sorting_;
    std::set<int> hidden_;  // columns
    zColumnDrag drag_;
    int pressed_ = 0;  // the column on whose label the button went down
    int meant_ = 0;    // the column whose label was pointed at last; 0: another place was
    zTableLoc active_;
    zSortKey name_;        // of the active cell's row, also while that is not there
    zTableLoc awaited_;    // the active cell before its row, or all of them, went
    int activePlace_ = 0;  // the last one of the active cell
    bool inSight_ = true;  // the active cell, or the awaited one, was
    bool greyed_ = false;
    bool numbered_ = false;
    bool focused_ = false;
    bool realized_ = false;
    bool allDirty_ = false;
    std::vector<zTableLoc> dirty_;
    int barThickness_;
    zAlarm painting_;  // set while something is to be painted
    std::function<void(int)> write_;
    std::function<std::string(zTableLoc)> read_;
    std::function<zSortKey(zTableLoc)> keyOf_;
    std::function<zSortKey(int)> nameOf_;
    std::vector<bool> stale_;  // rows not written since rowsChanged()
};
