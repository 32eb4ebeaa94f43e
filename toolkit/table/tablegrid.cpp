#include "toolkit/table/tablegrid.h"

#include "platform/index.h"

#include <algorithm>
#include <cstdlib>
#include <numeric>

void zTableGrid::setView(int width, int height) {
    viewWidth_ = width;
    viewHeight_ = height;
    if (rows > 0) scrollTo(firstRow_, left_);
}

void zTableGrid::scrollTo(int firstRow, int left) {
    firstRow_ = std::clamp(firstRow, 1, std::max(1, rows - wholeRows() + 1));
    left_ = std::clamp(left, 0, std::max(0, columnsWidth() - columnsView()));
}

int zTableGrid::wholeRows() const {
    return std::max(1, (viewHeight_ - labelHeight) / rowHeight);
}

int zTableGrid::columnsWidth() const {
    return std::accumulate(widths.begin() + 1, widths.end(), 0);
}

int zTableGrid::columnsView() const {
    return std::max(0, viewWidth_ - widths[0]);
}

int zTableGrid::lastRow() const {
    const int begun = (std::max(0, viewHeight_ - labelHeight) + rowHeight - 1) / rowHeight;
    return std::min(rows, firstRow_ + begun - 1);
}

int zTableGrid::columnLeft(int column) const {
    if (column == 0) return 0;
    return std::accumulate(widths.begin(), widths.begin() + column, -left_);
}

zRect zTableGrid::cell(zTableLoc l) const {
    if (l.column < 0 || l.column > columns() || l.row < 0 || l.row > rows) return {};
    return {columnLeft(l.column), l.row == 0 ? 0 : labelHeight + (l.row - firstRow_) * rowHeight,
            widths[asIndex(l.column)], l.row == 0 ? labelHeight : rowHeight};
}

zRect zTableGrid::visible(zTableLoc l) const {
    if (l.row > 0 && (l.row < firstRow_ || l.row > lastRow())) return {};
    const zRect whole = cell(l);
    const int left = std::max(whole.x, l.column == 0 ? 0 : widths[0]);
    const int right = std::min(whole.x + whole.width, viewWidth_);
    const int bottom = std::min(whole.y + whole.height, viewHeight_);
    if (right <= left || bottom <= whole.y) return {};
    return {left, whole.y, right - left, bottom - whole.y};
}

zTableLoc zTableGrid::at(int x, int y) const {
    if (x < 0 || y < 0 || x >= viewWidth_ || y >= viewHeight_) return {};
    const int row = y < labelHeight ? 0 : firstRow_ + (y - labelHeight) / rowHeight;
    if (row > rows) return {};
    for (int column = 0; column <= columns(); ++column) {
        const zRect place = visible({column, row});
        if (x >= place.x && x < place.x + place.width) return {column, row};
    }
    return {};
}

int zTableGrid::edgeAt(int x, int y) const {
    constexpr int near = 3;
    if (y < 0 || y >= labelHeight) return -1;
    for (int column = columns(); column >= 0; --column) {
        if (widths[asIndex(column)] == 0) continue;
        const zRect place = cell({column, 0});
        const int right = place.x + place.width;
        const bool hidden = column > 0 && right <= widths[0];  // behind the row labels
        if (!hidden && std::abs(x - right) <= near) return column;
    }
    return -1;
}

bool zTableGrid::reveal(zTableLoc l) {
    const int oldRow = firstRow_, oldLeft = left_;
    int row = firstRow_, left = left_;
    if (l.row > 0) row = std::clamp(row, l.row - wholeRows() + 1, l.row);
    if (l.column > 0 && l.column <= columns()) {
        const int begin = columnLeft(l.column) + left_ - widths[0];
        const int end = begin + widths[asIndex(l.column)];
        left = std::min(std::max(left, end - columnsView()), begin);
    }
    scrollTo(row, left);
    return firstRow_ != oldRow || left_ != oldLeft;
}
