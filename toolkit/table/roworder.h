// In which order a table shows its rows. A place is where a row stands on the screen, from 1; 0 stands for
// the labels. Needs no window.
#pragma once

#include "toolkit/table/sortkey.h"

#include <cstdint>
#include <functional>
#include <tuple>
#include <vector>

class zRowOrder {
  public:
    // New rows stand last until they are sorted.
    void setRows(int rows);

    // Equal rows stay in the order of their numbers. Costs little when hardly anything has moved since the
    // last time.
    void sort(bool descending, const std::function<zSortKey(int row)>& keyOf);
    void byNumber();

    // Numbers outside of the table stay as they are.
    int rowAt(int place) const { return other(rows_, place); }
    int placeOf(int row) const { return other(places_, row); }

  private:
    struct Entry {
        std::uint64_t high, low;
        int row;

        bool operator<(const Entry& other) const {
            return std::tie(high, low, row) < std::tie(other.high, other.low, other.row);
        }
    };

    static int other(const std::vector<int>& numbers, int number) {
        const auto index = static_cast<std::size_t>(number);
        return number > 0 && index < numbers.size() ? numbers[index] : number;
    }
    void findPlaces();

    int count_ = 0;
    std::vector<int> rows_, places_;  // by place, by row; [0] is 0; both empty: by number
    std::vector<zSortKey> keys_;      // these three are kept for their memory
    std::vector<Entry> entries_;
    std::vector<int> unknown_;
};
