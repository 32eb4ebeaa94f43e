// Tables: read-only text cells with labels, scroll bars, and one active cell whose row is highlighted.
//
// Setting the text that a cell has already costs nothing. Visible cells that changed are painted once, when
// the event loop runs again. The active cell follows mouse and keyboard; Ctrl+C copies labels and rows to the
// clipboard as tab-separated text.
#pragma once

#include "platform/index.h"
#include "toolkit/controls/control.h"
#include "toolkit/display/alarm.h"
#include "toolkit/table/columndrag.h"
#include "toolkit/table/tablegrid.h"
#include "toolkit/table/tablemodel.h"
#include "toolkit/table/tablepaint.h"

#include <array>
#include <functional>
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

    // Rows that are written on demand: after rowsChanged(), which says that the texts of all rows may have
    // changed, `write` is called once for each row when it is visible, becomes visible, or is read by text()
    // or Ctrl+C. It writes the row with setText() and does nothing else to the table. It stays in use until
    // it is replaced, also by an empty function.
    void writeOnDemand(std::function<void(int row)> write) { write_ = std::move(write); }
    void rowsChanged();
    std::string text(zTableLoc location);  // as shown

    // In pixels. Column 0 has the row labels; it is hidden at width 0. A width that the user has chosen
    // (columndrag.h) stays.
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

    std::function<void()> onActiveChange;  // the user has moved the active cell

    // Labels and cells with tabs between them: the column labels, if there are any, and the rows, as Ctrl+C
    // copies them; or one row, which ends without a new line.
    std::string tabSeparated();
    std::string tabSeparated(int row);

  protected:
    void point(int x, int y) override;  // the cell becomes the active one
    zRect selectedPlace() const override { return grid_.visible(active_); }

  private:
    struct Handlers;

    std::string textOf(zTableLoc location) const;
    void writeRows(int first, int last);
    void widen(int column, int width);
    int fittedWidth(int column);
    void arrange();
    void updateScrollBars();
    void scrollTo(int firstRow, int left);
    void changed(zTableLoc location);
    void changedRow(int row);
    void changedAll();
    void flush();
    void paintCell(zTableLoc location);
    void moveTo(zTableLoc location);
    void showFocus(bool on);
    std::array<zRect, 4> ringSides() const;
    void drawRing() const;

    zRect place_;
    Widget container_, frame_, vertical_, horizontal_;
    std::unique_ptr<zTablePaint> paint_;
    zTableModel model_;
    zTableGrid grid_;
    zColumnDrag drag_;
    zTableLoc active_;
    zTableLoc awaited_;  // the active cell before the table lost all its rows
    bool greyed_ = false;
    bool numbered_ = false;
    bool focused_ = false;
    bool realized_ = false;
    bool allDirty_ = false;
    std::vector<zTableLoc> dirty_;
    int barThickness_;
    zAlarm painting_;  // set while something is to be painted
    std::function<void(int)> write_;
    std::vector<bool> stale_;  // rows not written since rowsChanged()
};
