#include "ui/stats/keyedbaselines.h"

using namespace std::chrono_literals;

namespace {

// Rows that are their own keys, each with one counter, and a clock of their own.
class Rows : public KeyedBaselines<int, int> {
  public:
    void refreshAt(std::chrono::seconds time, const std::vector<int>& rows, int group = 0) {
        noteRows(
            rows, [](int row) { return row; }, group, Time(1000h + time));
    }
    void clear(const std::vector<int>& rows, int value) {
        beginClear();
        for (const int row : rows) baselines_[row] = value;
        endClear();
    }
    int of(int row) const {
        const auto found = baselines_.find(row);
        return found == baselines_.end() ? 0 : found->second;
    }
};

}  // namespace

TEST(Baselines, ThoseOfRowsAreDroppedAnHourAfterTheRow) {
    const struct {
        std::chrono::seconds back;
        int baseline;
    } cases[] = {{1s, 5}, {59min, 5}, {60min, 5}, {63min, 0}, {500h, 0}};
    for (const auto& c : cases) {
        Rows rows;
        rows.clear({1, 2}, 5);
        for (auto time = 0s; time <= 100min; time += 2s) rows.refreshAt(time, {1, 2});
        for (auto time = 0s; time<c.back; time += c.back> 100min ? 1h : 2s)
            rows.refreshAt(100min + time, {1});
        rows.refreshAt(100min + c.back - 1s, {1});
        rows.refreshAt(100min + c.back, {1, 2});
        EXPECT_EQ(rows.of(2), c.baseline) << c.back.count();
        EXPECT_EQ(rows.of(1), 5) << "was there all the time";
    }
}

TEST(Baselines, RowsOfWhatIsNotLookedAtAreNotGone) {
    Rows rows;
    rows.clear({1, 2}, 5);
    rows.refreshAt(0s, {1}, 7);
    rows.refreshAt(1s, {2}, 8);
    for (auto time = 1s; time < 3h; time += 30s) rows.refreshAt(time, {2}, 8);
    EXPECT_EQ(rows.of(1), 5);
    rows.refreshAt(4h, {1}, 7);  // nobody has looked for an hour, either
    EXPECT_EQ(rows.of(1), 5);
}

TEST(Baselines, AClearCanBeTakenBackWhenRowsAreDropped) {
    Rows rows;
    rows.clear({1, 2}, 5);
    rows.refreshAt(0s, {1, 2});
    rows.clear({1}, 9);
    for (auto time = 0s; time < 2h; time += 30s) rows.refreshAt(time, {1});
    EXPECT_EQ(rows.of(1), 9);
    EXPECT_EQ(rows.of(2), 0);
    rows.undoClear();
    EXPECT_EQ(rows.of(1), 5);
    rows.refreshAt(2h, {1, 2});
    EXPECT_EQ(rows.of(2), 5) << "as before that Clear";
    for (auto time = 2h + 0s; time < 4h; time += 30s) rows.refreshAt(time, {1});
    EXPECT_EQ(rows.of(2), 0);
}
