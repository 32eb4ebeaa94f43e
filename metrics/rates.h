// How fast counters grow, from readings of one adapter or service.
//
// A rate is unknown, with its reason, when it would be wrong: when one of the two readings does not have the
// counter, when the driver, the row or the circuit is another one, and when it exceeds what the link carries,
// since a counter that was set back looks as if it had grown by almost its whole width.
//
// The limit is in cells, and holds for counters of anything: a packet, frame or request takes one cell at
// least, an error is one of a cell or a frame, and a connection takes a message.
#pragma once

#include "metrics/reading.h"

#include <deque>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <variant>

namespace metrics {

using Rate = std::variant<Unknown, double>;  // per second

// Cells per second in each direction, by a reading of the adapter's link. While its kind is not known it is
// taken for the fastest.
double linkLimit(const Reading& adapter);
double linkLimit(const SuniStatsView& link);

struct Count {
    std::uint32_t value;
    Taken taken;
};

// The growth of a counter of so many bits over the time between the middles of asking and answer. It is too
// much only if it exceeds the limit over the longest time that can lie between the two values, from the
// earlier question to the later answer. When the limit could fill the counter in that time nobody knows how
// often it has wrapped.
Rate rateOf(const Count& before, const Count& now, unsigned wrapBits, double limit);

enum class Smoothing : std::uint8_t {
    none,  // over the time since the reading before
    // The growth of the last readings divided by their time: as many as make ten seconds, or all since the
    // last one from which no rate is known.
    tenSeconds,
};

// Keeps the last readings, those of ten seconds for smoothing.
class Rates {
  public:
    explicit Rates(Smoothing smoothing = Smoothing::none) : smoothing_(smoothing) {}

    void smooth(Smoothing smoothing) { smoothing_ = smoothing; }

    // The next reading of the same adapter or service. `driver` is anything that tells one run of the driver
    // and one adapter from others, such as the system's boot, what the driver says of itself, and how often
    // the channel was opened. It is taken before the first request of the reading: what was read before the
    // channel was lost in the middle is of the older driver. `limit`: see linkLimit().
    void add(Reading reading, std::string driver, double limit);

    // Of a counter in the last reading; `row` as in Reading::value().
    Rate rate(const Group& group, const Metric& metric, std::size_t row = 0) const;

  private:
    // Rows of a table by their keys; nothing: several rows have it.
    using Rows = std::unordered_map<std::string, std::optional<std::size_t>>;
    struct Kept {
        Reading reading;
        std::string driver;
        double limit;
        mutable std::map<const Group*, Rows> rows = {};

        const Rows& rowsOf(const Group& group) const;
        // The row with a key, 0 of a group that is no table.
        std::variant<Unknown, std::size_t> find(const Group& group, const std::string& key) const;
    };
    struct Step {
        Rate rate;
        double seconds;
    };
    static Step step(const Kept& before, const Kept& now, const Group& group, const Metric& metric,
                     const std::string& key);

    Smoothing smoothing_;
    std::deque<Kept> kept_;  // oldest first
};

}  // namespace metrics
