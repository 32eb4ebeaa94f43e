// The pixel columns of one series: which time belongs to which column, and what is known of it.
//
// Columns are numbered from the clock's beginning on: number n is the time from n * each() to before
// (n + 1) * each(). So a picture that is scrolled has the same columns as one that is made anew. A piece of
// time that is shorter than a column belongs to the one in which it begins, a longer one to all columns from
// that one to before the one in which it ends: next to each other they share no column and leave none out.
#pragma once

#include "toolkit/plot/plotseries.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

class zPlotColumns {
  public:
    using Number = std::int64_t;

    static constexpr zPlotBand gap{std::numeric_limits<float>::quiet_NaN(),
                                   std::numeric_limits<float>::quiet_NaN(),
                                   std::numeric_limits<float>::quiet_NaN()};
    static bool isGap(const zPlotBand& band) { return std::isnan(band.mean); }

    // So many columns of this length, which end with number `last`; all are gaps.
    void lay(int width, zPlotTime each, Number last);
    void scrollTo(Number last);  // forward; those that come into sight are gaps

    Number first() const { return last_ - width() + 1; }
    Number last() const { return last_; }
    int width() const { return width_; }
    zPlotTime each() const { return each_; }
    // From the one before the first, which a line comes from, to the last.
    const zPlotBand& at(Number column) const { return ring_[placeOf(column)]; }
    float largest() const;  // of those from the first on; 0 if all are gaps

    // Asks the series for the columns from this one to the last, except those that are settled: the series
    // has shown a later piece. Returns the first for which `same(before, now)` is false, or else the one
    // behind the last.
    using Same = std::function<bool(const zPlotBand& before, const zPlotBand& now)>;
    Number collect(const zPlotSeries& series, Number from, const Same& same);

    static Number columnOf(zPlotTime time, zPlotTime each);

  private:
    std::size_t placeOf(Number column) const { return static_cast<std::size_t>(column) & (ring_.size() - 1); }
    void put(Number from, Number until, const zPlotBand& band);

    zPlotTime each_{1};
    Number last_ = 0;
    int width_ = 0;
    std::vector<zPlotBand> ring_{gap};  // its size is a power of two
    Number settled_ = 0;                // columns before this one
    mutable float largest_ = 0;
    mutable Number largestAt_ = -1;  // -1: has to be looked for
};
