// What a plot shows: named courses of values over time. Where a course says nothing is a gap.
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>

using zPlotTime = std::chrono::milliseconds;  // since the beginning of a monotonic clock

// The values of some time. They are not negative.
struct zPlotBand {
    float least, mean, most;
};

struct zPlotSeries {
    using See = std::function<void(zPlotTime begin, zPlotTime length, const zPlotBand& band)>;

    std::string name;
    std::string unit;  // series of the same unit share a scale
    // Calls `see` for each piece of time that touches that from `from` to before `to` and of which something
    // is known, from the oldest on. Pieces do not overlap; they are at most a minute long, and those that
    // are older may be whole minutes where they were shorter pieces before. Of all that it has shown only the
    // newest piece may become another one.
    std::function<void(zPlotTime from, zPlotTime to, const See& see)> visit;
    std::function<std::optional<double>()> present;  // nothing: unknown
};
