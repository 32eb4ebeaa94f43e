#include "toolkit/plot/plotcolumns.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <utility>

using std::chrono::minutes;

namespace {

// Pieces of time that belong to one column.
class Sum {
  public:
    void add(const zPlotBand& band, zPlotTime length) {
        least_ = std::min(least_, band.least);
        most_ = std::max(most_, band.most);
        const auto weight = static_cast<double>(length.count());
        weighted_ += static_cast<double>(band.mean) * weight;
        time_ += weight;
    }
    bool isEmpty() const { return time_ == 0; }
    // Only if it is not empty.
    zPlotBand band() const { return {least_, static_cast<float>(weighted_ / time_), most_}; }

  private:
    float least_ = std::numeric_limits<float>::infinity(), most_ = 0;
    double weighted_ = 0, time_ = 0;
};

}  // namespace

zPlotColumns::Number zPlotColumns::columnOf(zPlotTime time, zPlotTime each) {
    return std::max<Number>(time / each, 0);
}

void zPlotColumns::lay(int width, zPlotTime each, Number last) {
    each_ = each;
    last_ = last;
    width_ = std::max(1, width);
    ring_.assign(std::bit_ceil(static_cast<std::size_t>(width_) + 1), gap);
    settled_ = 0;
    largest_ = 0;
    largestAt_ = -1;
}

void zPlotColumns::scrollTo(Number last) {
    const Number come = std::min<Number>(last - last_, static_cast<Number>(ring_.size()));
    last_ = last;
    for (Number column = last - come + 1; column <= last; ++column) ring_[placeOf(column)] = gap;
    if (largestAt_ < first()) largestAt_ = -1;
}

void zPlotColumns::put(Number from, Number until, const zPlotBand& band) {
    for (Number column = from; column < until; ++column) ring_[placeOf(column)] = band;
    if (until <= first() || largestAt_ < 0) return;
    if (band.most >= largest_) {
        largest_ = band.most;
        largestAt_ = until - 1;
    } else if (largestAt_ >= from && largestAt_ < until) {
        largestAt_ = -1;
    }
}

float zPlotColumns::largest() const {
    if (largestAt_ >= 0) return largest_;
    largest_ = 0;
    for (Number column = std::max<Number>(first(), 0); column <= last_; ++column) {
        const zPlotBand& band = at(column);
        if (isGap(band) || band.most < largest_) continue;
        largest_ = band.most;
        largestAt_ = column;
    }
    return largest_;
}

zPlotColumns::Number zPlotColumns::collect(const zPlotSeries& series, Number from, const Same& same) {
    from = std::max({from, first() - 1, settled_});
    Number changed = last_ + 1, open = from;
    Sum sum;
    const auto storeUntil = [&](Number column, const zPlotBand& now) {
        for (Number n = open; n < std::min(column, changed); ++n)
            if (!same(at(n), now)) changed = n;
        put(std::exchange(open, column), column, now);
    };
    const auto closeUntil = [&](Number column) {
        if (open < column && !sum.isEmpty()) storeUntil(open + 1, std::exchange(sum, {}).band());
        if (open < column) storeUntil(column, gap);
    };
    // Where a column has more than a minute, what is going to be a whole minute belongs together now.
    const bool byMinutes = each_ >= minutes(1);
    const auto see = [&](zPlotTime begin, zPlotTime length, const zPlotBand& band) {
        const zPlotTime whole = byMinutes ? begin / minutes(1) * minutes(1) : begin;
        const Number at = columnOf(whole, each_);
        const Number end = std::max(byMinutes ? 0 : columnOf(begin + length, each_), at + 1);
        settled_ = std::max(settled_, at);
        const Number first = std::max(at, from), until = std::min(end, last_ + 1);
        if (first >= until) return;
        closeUntil(first);
        const bool shares = !sum.isEmpty() || first + 1 == until;
        if (shares) sum.add(band, length);
        if (first + 1 == until) return;  // other pieces may follow in this column
        if (shares) closeUntil(first + 1);
        storeUntil(until, band);
    };
    series.visit(from * each_, (last_ + 1) * each_, std::ref(see));
    closeUntil(last_ + 1);
    return changed;
}
