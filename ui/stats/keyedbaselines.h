// Baselines that belong to the rows of a table, by a key in the row. A row that comes back counts from where
// it did, unless it has been gone for an hour: then its baseline is dropped, so that a table whose rows come
// and go for months does not grow.
#pragma once

#include "ui/stats/baselines.h"

#include <chrono>
#include <unordered_map>

template <class Key, class Counters, class Hash = std::hash<Key>>
class KeyedBaselines : public Baselines<std::unordered_map<Key, Counters, Hash>> {
  public:
    using Time = std::chrono::steady_clock::time_point;

    // A row is gone for a minute at most before that is noticed.
    static constexpr std::chrono::minutes life{60}, notice{1};

  protected:
    // To be called at each refresh that is no part of a Clear. The rows are those of one of several groups
    // (the clients that a page shows in turn): rows of the others are not known to be gone.
    template <class Rows, class KeyOf> void noteRows(const Rows& rows, KeyOf keyOf, int group, Time now) {
        auto& baselines = this->baselines_;
        if (group == group_ && now < next_) return;
        group_ = group;
        next_ = now + notice;
        std::erase_if(seen_, [&](const auto& entry) { return !baselines.contains(entry.first); });
        for (const auto& row : rows)
            if (const Key key = keyOf(row); baselines.contains(key)) seen_[key] = {now, group};
        std::erase_if(baselines, [&](const auto& entry) {
            const auto seen = seen_.try_emplace(entry.first, Seen{now, group}).first;
            return seen->second.group == group && now - seen->second.time > life + notice;
        });
    }

  private:
    struct Seen {
        Time time;
        int group;
    };

    std::unordered_map<Key, Seen, Hash> seen_;  // those that have a baseline
    int group_ = 0;
    Time next_{};  // when to look again
};
