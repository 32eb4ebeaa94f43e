#include "toolkit/table/hiddencolumns.h"

#include <iterator>
#include <map>

namespace {

std::map<const zControlRow*, std::set<int>> chosenColumns;  // by kind of table

}  // namespace

zHiddenColumns::zHiddenColumns(const zControlRow& kind) : kind_(kind), columns_(chosenColumns[&kind]) {}

int zHiddenColumns::among(int columns) const {
    return static_cast<int>(std::distance(columns_.begin(), columns_.upper_bound(columns)));
}

void zHiddenColumns::hide(int column) {
    columns_.insert(column);
    chosenColumns[&kind_] = columns_;
}

void zHiddenColumns::showAll() {
    columns_.clear();
    chosenColumns[&kind_] = columns_;
}
