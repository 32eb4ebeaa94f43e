// Tables: text cells to be read, with labels, scroll bars, and one active cell whose row is marked.
//
// Writing a text that stands there already costs nothing. What changed is painted when the current handler has
// ended, each visible cell once, and nothing else. The active cell follows mouse and keyboard; Ctrl+C puts labels and
// rows on the clipboard as text separated by tabs.
#pragma once

#include "toolkit/controls/control.h"
#include "toolkit/table/tablegrid.h"
#include "toolkit/table/tablemodel.h"
#include "toolkit/table/tablepaint.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

class zTable : public zControl {
  public:
    zTable(Widget board, const zRect& place, const zControlRow& row);
    ~zTable() override;

    Widget outermost() const override { return container_; }
    void enable(bool on) override;
    void realized() override;

    // See zTableModel. New columns have room for a number of ten digits.
    const zTableModel& model() const { return model_; }
    void resize(int columns, int rows);
    bool setText(zTableLoc location, std::string_view text);

    // Rows that are written when somebody looks: rowsChanged() says that the texts of all rows may have become others,
    // and `write` is called once with each row that is in sight, comes into sight or is asked for after that. It writes
    // the row with setText, does nothing else to the table, and is called until there is another or none.
    void writeOnDemand(std::function<void(int row)> write) { write_ = std::move(write); }
    void rowsChanged();
    std::string text(zTableLoc location);  // as it is shown

    // Pixels. Column 0 is that of the row labels; it is not there at width 0.
    void setColumnWidth(int column, int width);
    void fitColumn(int column, std::initializer_list<std::string_view> texts);  // to the widest of them
    int columnWidth(int column) const { return grid_.widths[static_cast<std::size_t>(column)]; }
    void numberRows(bool on);  // the row labels are the numbers of the rows

    void setFont(const std::string& pattern);  // see zTablePaint; widths stay as they are
    zFont font() const { return paint_->font(); }
    int textWidth(std::string_view text) const { return paint_->textWidth(text); }
    int textHeight() const { return paint_->textHeight(); }

    // {0, 0}: none. Scrolls to it and calls no handler.
    void setActiveCell(zTableLoc location);
    zTableLoc activeCell() const { return active_; }

    std::function<void()> onActiveChange;  // by the user

    // What Ctrl+C copies: the column labels, if there are any, and the rows.
    std::string tabSeparated();

  private:
    struct Handlers;

    std::string textOf(zTableLoc location) const;
    void writeRows(int first, int last);
    void arrange();
    void updateScrollBars();
    void scrollTo(int firstRow, int left);
    void changed(zTableLoc location);
    void changedRow(int row);
    void changedAll();
    void schedule();
    void flush();
    void paintCell(zTableLoc location);
    void moveTo(zTableLoc location);
    void copy(unsigned long time);

    zRect place_;
    Widget container_, frame_, vertical_, horizontal_;
    std::unique_ptr<zTablePaint> paint_;
    zTableModel model_;
    zTableGrid grid_;
    zTableLoc active_;
    zTableLoc awaited_;  // the active cell of a table that has lost all its rows
    bool numbered_ = false;
    bool focused_ = false;
    bool realized_ = false;
    bool allDirty_ = false;
    std::vector<zTableLoc> dirty_;
    std::function<void(int)> write_;
    std::vector<bool> stale_;  // rows that `write_` has not seen since rowsChanged()
    unsigned long timer_ = 0;
    std::string clipboard_;
    bool ownsClipboard_ = false;
};
