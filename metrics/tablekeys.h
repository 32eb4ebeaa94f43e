// The rows of a table by their keys, which are compared as the bytes of the driver's reply.
#pragma once

#include "metrics/metric.h"

#include <cstdint>
#include <variant>
#include <vector>

namespace metrics {

// The keys of a table as they stand in its bytes, which outlive this object.
class TableKeys {
  public:
    TableKeys(Bytes table, std::size_t rowSize, RowBytes key) : table_(table), rowSize_(rowSize), key_(key) {}

    std::size_t size() const { return table_.size() / rowSize_; }
    // The bytes as a number: keys have at most eight.
    std::uint64_t operator[](std::size_t row) const {
        std::uint64_t key = 0;
        for (const std::uint8_t byte : table_.subspan(row * rowSize_ + key_.at, key_.length))
            key = key << 8 | byte;
        return key;
    }
    // The same keys at the same places.
    bool operator==(const TableKeys& other) const;

  private:
    Bytes table_;
    std::size_t rowSize_;
    RowBytes key_;
};

// The order of a table's rows by their keys. It is that of all tables with the same keys in the same places,
// so that each call is given the keys.
class KeyOrder {
  public:
    explicit KeyOrder(const TableKeys& keys);

    // Unknown::noneBefore: no row has it.
    std::variant<Unknown, std::size_t> find(const TableKeys& keys, std::uint64_t key) const;
    bool isShared(std::size_t row) const { return !shared_.empty() && shared_[row]; }

  private:
    std::vector<std::uint32_t> rows_;  // by their keys
    std::vector<bool> shared_;         // rows whose key others have, too; empty: none
};

}  // namespace metrics
