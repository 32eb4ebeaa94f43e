#include "toolkit/table/tablemodel.h"

#include "platform/index.h"

#include <algorithm>

namespace {

struct Span {
    std::size_t begin, end;
};

// The position of a cell in the string of its row. A cell that was never set is an empty span at the end of
// the row.
Span find(const std::string& row, int column) {
    std::size_t begin = 0;
    for (; column > 0 && begin != row.npos; --column) {
        begin = row.find('\0', begin);
        if (begin != row.npos) ++begin;
    }
    if (begin == row.npos) return {row.size(), row.size()};
    return {begin, std::min(row.find('\0', begin), row.size())};
}

}  // namespace

void zTableModel::resize(int columns, int rows) {
    columns = std::clamp(columns, 0, mostColumns);
    if (columns < columns_)
        for (std::string& row : rows_) row.resize(find(row, columns).end);
    columns_ = columns;
    rows_.resize(asIndex(std::clamp(rows, 0, mostRows)) + 1);
}

bool zTableModel::has(zTableLoc l) const {
    return l.column >= 0 && l.column <= columns_ && l.row >= 0 && l.row <= rows();
}

bool zTableModel::set(zTableLoc location, std::string_view text) {
    if (!has(location)) return false;
    text = text.substr(0, text.find('\0'));
    if (this->text(location) == text) return false;
    std::string& row = rows_[asIndex(location.row)];
    const auto cells = std::count(row.begin(), row.end(), '\0');
    if (cells < location.column) row.append(asIndex(location.column - cells), '\0');
    const Span place = find(row, location.column);
    row.replace(place.begin, place.end - place.begin, text);
    return true;
}

std::string_view zTableModel::text(zTableLoc location) const {
    if (!has(location)) return {};
    const std::string& row = rows_[asIndex(location.row)];
    const Span place = find(row, location.column);
    return std::string_view(row).substr(place.begin, place.end - place.begin);
}
