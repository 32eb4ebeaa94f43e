#include "metrics/tablekeys.h"

#include <algorithm>
#include <numeric>

namespace metrics {

bool TableKeys::operator==(const TableKeys& other) const {
    if (size() != other.size()) return false;
    for (std::size_t row = 0; row < size(); ++row)
        if ((*this)[row] != other[row]) return false;
    return true;
}

KeyOrder::KeyOrder(const TableKeys& keys) : rows_(keys.size()) {
    std::iota(rows_.begin(), rows_.end(), 0);
    const auto keyOf = [&](std::uint32_t row) { return keys[row]; };
    if (!std::ranges::is_sorted(rows_, {}, keyOf)) std::ranges::sort(rows_, {}, keyOf);
    for (std::size_t i = 1; i < rows_.size(); ++i) {
        if (keys[rows_[i - 1]] != keys[rows_[i]]) continue;
        shared_.resize(rows_.size());
        shared_[rows_[i - 1]] = shared_[rows_[i]] = true;
    }
}

std::variant<Unknown, std::size_t> KeyOrder::find(const TableKeys& keys, std::uint64_t key) const {
    const auto found = std::ranges::lower_bound(rows_, key, {}, [&](std::uint32_t row) { return keys[row]; });
    if (found == rows_.end() || keys[*found] != key) return Unknown::noneBefore;
    if (isShared(*found)) return Unknown::sharedKey;
    return std::size_t{*found};
}

}  // namespace metrics
