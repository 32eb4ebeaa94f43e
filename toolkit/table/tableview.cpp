// What a table shows of its rows and columns, in which order, and the ways through it.
#include "toolkit/table/table.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace {

// Upper and lower case of letters are the same.
bool containsText(std::string_view text, std::string_view wanted) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    const auto same = [lower](char a, char b) { return lower(a) == lower(b); };
    return std::search(text.begin(), text.end(), wanted.begin(), wanted.end(), same) != text.end();
}

}  // namespace

void zTable::rowsChanged() {
    stale_.assign(asIndex(model_.rows()) + 1, true);
    moveRows([this] {
        sort();
        followRow();
    });
}

// Runs `change`, after which rows may stand elsewhere and another one be active. What is seen is painted only
// where there is another row now. The view moves with the active row, but not away from the first rows of a
// sorted table: who sorts wants to see those.
template <class Change> void zTable::moveRows(const Change& change) {
    const int first = grid_.firstRow(), last = grid_.lastRow();
    std::vector<int> rows;
    for (int place = first; place <= last; ++place) rows.push_back(order_.rowAt(place));
    const zTableLoc active = active_, activePlace = placeOf(active_);
    change();
    if (active_ != active) {
        changedRow(active_.row);
        changedPlaces(activePlace.row);
    }
    for (int place = first; place <= last; ++place)
        if (rows[asIndex(place - first)] != order_.rowAt(place)) changedPlaces(place);
    if (!realized_) return;
    const bool follows = sorting_.column == 0 || first > 1;
    if (inSight_ && active_.row > 0 && follows && grid_.reveal(placeOf(active_))) {
        updateScrollBars();
        changedAll();
    }
    noteActive();
    writePlaces(grid_.firstRow(), grid_.lastRow());
}

void zTable::sort() {
    const int column = sorting_.column;
    if (column > 0)
        order_.sort(sorting_.descending, [this, column](int row) { return keyOf_({column, row}); });
    else
        order_.byNumber();
}

void zTable::followRow() {
    if (!nameOf_) return;
    if (active_.row > 0) awaited_ = std::exchange(active_, {});
    const zTableLoc wanted = awaited_;
    if (wanted.row == 0 || wanted.column > grid_.columns()) return;
    const auto is = [this](int row) { return row > 0 && row <= grid_.rows && nameOf_(row) == name_; };
    // Names may come twice: the nearest one is meant.
    for (int away = 0; away < std::max(wanted.row, grid_.rows); ++away)
        for (const int row : {wanted.row - away, wanted.row + away})
            if (is(row)) {
                active_ = {wanted.column, row};
                awaited_ = {};
                return;
            }
}

void zTable::noteActive() {
    if (active_.row == 0) return;
    const zTableLoc place = placeOf(active_);
    const zRect cell = grid_.cell(place), seen = grid_.visible(place);
    activePlace_ = place.row;
    inSight_ = grid_.width() == 0 || (seen.width == cell.width && seen.height == cell.height);
}

void zTable::sortable(std::function<zSortKey(zTableLoc)> keyOf) {
    keyOf_ = std::move(keyOf);
    if (!keyOf_) return sortBy({});
    for (int column = 1; column <= grid_.columns(); ++column)
        setColumnWidth(column, std::max(widths_[asIndex(column)], labelWidth(column)));
}

void zTable::sortBy(Sorting sorting) {
    if (!canSort(sorting.column)) sorting = {};
    if (sorting == sorting_) return;
    for (const int column : {sorting_.column, sorting.column}) changed({column, 0});
    sorting_ = sorting;
    moveRows([this] { sort(); });
}

void zTable::sortFurther(int column) {
    if (!canSort(column)) return;
    if (sorting_.column != column)
        sortBy({column, false});
    else if (!sorting_.descending)
        sortBy({column, true});
    else
        sortBy({});
}

int zTable::hiddenAmong(int columns) const {
    return static_cast<int>(std::distance(hidden_.begin(), hidden_.upper_bound(columns)));
}

bool zTable::canHide(int column) const {
    return column > 0 && column <= grid_.columns() && !isHidden(column) &&
           hiddenAmong(grid_.columns()) + 1 < grid_.columns();
}

void zTable::hideColumn(int column) {
    if (!canHide(column)) return;
    if (sorting_.column == column) sortBy({});  // nothing would say how the rows are sorted
    const std::vector<int> shown = shownColumns();
    const auto at = std::ranges::find(shown, column);
    for (zTableLoc* cell : {&active_, &awaited_})
        if (cell->column == column) cell->column = at + 1 != shown.end() ? at[1] : at[-1];
    hidden_.insert(column);
    setWidths();
    arrange();
}

void zTable::showAllColumns() {
    hidden_.clear();
    setWidths();
    arrange();
}

std::vector<int> zTable::shownColumns() const {
    std::vector<int> columns;
    for (int column = 1; column <= grid_.columns(); ++column)
        if (!isHidden(column)) columns.push_back(column);
    return columns;
}

int zTable::meantColumn() const {
    return meant_ > 0 ? meant_ : active_.column;
}

// To the nearest cell.
void zTable::moveBy(int columns, int rows) {
    const std::vector<int> shown = shownColumns();
    if (grid_.rows == 0 || shown.empty()) return;
    const zTableLoc from = beginning();
    const int last = static_cast<int>(shown.size()) - 1;
    int index = from.column > 0 ? 0 : -1;
    for (const int column : shown) index += column < from.column;
    index = std::clamp(index + columns, 0, last);
    moveTo(locationAt({shown[asIndex(index)], std::clamp(from.row + rows, 1, grid_.rows)}));
}

// Where the active cell is on the screen, or was while its row was there.
zTableLoc zTable::beginning() const {
    if (active_.row > 0) return placeOf(active_);
    return {awaited_.column, awaited_.row > 0 ? activePlace_ : 0};
}

bool zTable::contains(zTableLoc location, std::string_view wanted) const {
    return unwritten(location.row) ? containsText(read_(location), wanted)
                                   : containsText(model_.text(location), wanted);
}

bool zTable::find(std::string_view wanted) {
    const std::vector<int> columns = shownColumns();
    if (wanted.empty() || grid_.rows == 0 || columns.empty()) return false;
    const zTableLoc begin = beginning();
    const int from = std::clamp(begin.row, 1, grid_.rows);
    // The row where it begins comes twice: from the active cell on, and up to it.
    for (int step = 0; step <= grid_.rows; ++step) {
        const int row = order_.rowAt((from - 1 + step) % grid_.rows + 1);
        if (!read_) writeRow(row);
        for (const int column : columns) {
            if (step == 0 && column <= begin.column) continue;
            if (step == grid_.rows && column > begin.column) break;
            if (!contains({column, row}, wanted)) continue;
            moveTo({column, row});
            return true;
        }
    }
    return false;
}
