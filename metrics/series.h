// The course of one watched value: the last hour in slots of a quarter of a second, the fastest refresh, and
// the last 24 hours in minutes, with gaps where nothing is known. All memory is part of the object, which has
// less than 80,000 bytes.
//
// Time is a monotonic clock's, and goes forward: a value for slots before the newest one is left out, and of
// two values in the newest the later stands. Minutes are those of this clock. Values are kept with 24 bits,
// which is enough for rates and states, and too little for the totals of counters.
#pragma once

#include "metrics/value.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>

namespace metrics {

// Of a slot, a minute or a longer time.
struct Band {
    float least, mean, most;
};

class Series {
  public:
    static constexpr std::chrono::milliseconds slot{250};
    static constexpr std::chrono::hours samplesFor{1}, minutesFor{24};

    Series();

    // The value of the time from `since`, which is the moment of the reading before, to `now`: all slots
    // between get it, and one does when it is shorter than a slot. Slots that nothing is added for are gaps.
    void add(Moment since, Moment now, float value);

    // What is known of the time between two moments, all slots taken together; those of which only minutes
    // are left have the values of the minute. The mean goes by time. Nothing: a gap.
    std::optional<Band> over(Moment from, Moment to) const;

    // Each slot (of the last hour before the newest) or minute that touches that time, from the oldest on,
    // without the gaps. `length` is slot or one minute.
    using Visit = std::function<void(Moment begin, std::chrono::milliseconds length, const Band& band)>;
    void visit(Moment from, Moment to, const Visit& see) const;

  private:
    using Number = std::int64_t;  // of a slot or a minute since the clock's beginning
    static constexpr Number slotsOfMinute = std::chrono::minutes(1) / slot, slotsOfHour = samplesFor / slot;
    // A minute more than an hour, so that its first one is whole.
    static constexpr std::size_t slots = slotsOfHour + slotsOfMinute;
    static constexpr std::size_t minutes = minutesFor / std::chrono::minutes(1);

    void advance(Number number);
    void forget();
    Number firstSlot() const;  // before it only minutes are given
    Band minuteOfSlots(Number minute) const;
    float& sample(Number number) { return samples_[static_cast<std::size_t>(number) % slots]; }
    float sample(Number number) const { return samples_[static_cast<std::size_t>(number) % slots]; }
    Band& band(Number minute) { return bands_[static_cast<std::size_t>(minute) % minutes]; }
    const Band& band(Number minute) const { return bands_[static_cast<std::size_t>(minute) % minutes]; }

    Number newest_ = -1;                // slot; -1: nothing was added
    std::array<float, slots> samples_;  // NaN: a gap
    std::array<Band, minutes> bands_;   // of the minutes before the newest slot's; NaN: a gap
};

static_assert(sizeof(Series) <= 80'000);

}  // namespace metrics
