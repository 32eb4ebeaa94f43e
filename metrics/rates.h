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
#include "metrics/tablekeys.h"

#include <deque>
#include <map>
#include <memory>
#include <string>
#include <variant>
#include <vector>

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
    // The growth since a reading of ten seconds ago, or of somewhat more, since some are left out, divided by
    // that time. Nothing from before a reading without a rate counts, nor up to the next one that is kept.
    tenSeconds,
};

// Keeps the last two readings, and for smoothing some of those before, two seconds or more apart.
class Rates {
  public:
    explicit Rates(Smoothing smoothing = Smoothing::none) : smoothing_(smoothing) {}

    void smooth(Smoothing smoothing);

    // The next reading of the same adapter or service. `driver` is anything that tells one run of the driver
    // and one adapter from others, such as the system's boot, what the driver says of itself, and how often
    // the channel was opened. To be taken before the first request of the reading: if the channel is lost in
    // the middle, what was read until then is of the older driver. `limit`: see linkLimit().
    void add(Reading reading, std::string driver, double limit);
    // The same, in place of the last reading: the two are too near each other for a rate.
    void addAgain(Reading reading, std::string driver, double limit);

    // Of a counter in the last reading; `row` as in Reading::value(). Group and metric are those of groups().
    Rate rate(const Group& group, const Metric& metric, std::size_t row = 0) const;

    // Of all rows of a table in the last reading, none when it is missing. They replace what is in `rates`,
    // whose memory is used again.
    void rates(const Group& group, const Metric& metric, std::vector<Rate>& rates) const;

    std::size_t kept() const { return kept_.size(); }  // readings

  private:
    struct Kept {
        Reading reading;
        std::string driver;
        double limit;
        // The counters, by row, whose growth since the kept reading before is not known, be it that of a
        // reading that was left out between. Only for smoothing.
        std::map<const Metric*, std::vector<bool>> gaps = {};
        mutable std::map<const Group*, std::shared_ptr<const KeyOrder>> orders = {};
    };
    class Step;

    const std::shared_ptr<const KeyOrder>& orderOf(std::size_t number, const Group& group) const;
    std::vector<Step> stepsOf(const Group& group) const;
    Rate over(const std::vector<Step>& steps, const Metric& metric, std::size_t row) const;
    template <class IsGap> void noteGaps(std::size_t number, IsGap isGap);
    void noteUnknown(std::size_t number);
    void leaveOut(std::size_t number);

    Smoothing smoothing_;
    std::deque<Kept> kept_;  // oldest first
};

}  // namespace metrics
