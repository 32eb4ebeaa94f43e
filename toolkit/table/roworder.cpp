#include "toolkit/table/roworder.h"

#include "platform/index.h"

#include <algorithm>
#include <numeric>

void zRowOrder::setRows(int rows) {
    count_ = rows;
    if (rows_.empty()) return;
    std::erase_if(rows_, [rows](int row) { return row > rows; });
    for (int row = static_cast<int>(rows_.size()); row <= rows; ++row) rows_.push_back(row);
    findPlaces();
}

void zRowOrder::byNumber() {
    rows_ = places_ = {};
    keys_ = {};
    entries_ = {};
    unknown_ = {};
}

void zRowOrder::sort(bool descending, const std::function<zSortKey(int)>& keyOf) {
    if (rows_.empty()) {
        rows_.resize(asIndex(count_) + 1);
        std::iota(rows_.begin(), rows_.end(), 0);
    }
    // Owners have their rows one behind the other in memory: it takes far longer to read them in another
    // order.
    keys_.resize(rows_.size());
    for (int row = 1; row <= count_; ++row) keys_[asIndex(row)] = keyOf(row);
    entries_.clear();
    unknown_.clear();
    for (auto row = rows_.begin() + 1; row != rows_.end(); ++row) {
        const zSortKey& key = keys_[asIndex(*row)];
        if (!key.known)
            unknown_.push_back(*row);
        else if (descending)
            entries_.push_back({~key.high, ~key.low, *row});
        else
            entries_.push_back({key.high, key.low, *row});
    }
    if (!std::is_sorted(entries_.begin(), entries_.end())) std::sort(entries_.begin(), entries_.end());
    std::ranges::sort(unknown_);
    auto place = rows_.begin() + 1;
    for (const Entry& entry : entries_) *place++ = entry.row;
    std::ranges::copy(unknown_, place);
    findPlaces();
}

void zRowOrder::findPlaces() {
    places_.resize(rows_.size());
    for (std::size_t place = 0; place < rows_.size(); ++place)
        places_[asIndex(rows_[place])] = static_cast<int>(place);
}
