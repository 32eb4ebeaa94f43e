#include "metrics/series.h"

#include <algorithm>
#include <cmath>
#include <limits>

using std::chrono::milliseconds;

namespace metrics {

namespace {

constexpr float gap = std::numeric_limits<float>::quiet_NaN();
constexpr Band noBand{gap, gap, gap};

// Bands, each of which stands for some time, taken together.
class Sum {
  public:
    void add(const Band& band, double time) {
        least_ = std::min(least_, band.least);
        most_ = std::max(most_, band.most);
        weighted_ += static_cast<double>(band.mean) * time;
        time_ += time;
    }
    std::optional<Band> band() const {
        if (time_ <= 0) return {};
        return Band{least_, static_cast<float>(weighted_ / time_), most_};
    }

  private:
    float least_ = std::numeric_limits<float>::infinity(), most_ = -least_;
    double weighted_ = 0, time_ = 0;
};

}  // namespace

Series::Series() {
    forget();
}

void Series::forget() {
    samples_.fill(gap);
    bands_.fill(noBand);
}

void Series::add(Moment since, Moment now, float value) {
    const auto nearest = [](Moment moment) {
        return (std::chrono::round<milliseconds>(moment.time_since_epoch()) + slot / 2) / slot;
    };
    Number first = std::max<Number>(nearest(since), 0);
    const Number end = std::max(nearest(now), first + 1);
    if (newest_ < 0) newest_ = first;
    first = std::max({first, newest_, end - static_cast<Number>(minutes) * slotsOfMinute});
    for (Number number = first; number < end; ++number) {
        advance(number);
        sample(number) = value;
    }
}

// What lies between is a gap so far. A minute gets its values when it is over.
void Series::advance(Number number) {
    if (number - newest_ > static_cast<Number>(minutes + 1) * slotsOfMinute) {
        forget();
        newest_ = number;
    }
    while (newest_ < number) {
        const Number over = newest_ / slotsOfMinute;
        if (++newest_ % slotsOfMinute == 0) band(over) = minuteOfSlots(over);
        sample(newest_) = gap;
    }
}

Band Series::minuteOfSlots(Number minute) const {
    Sum sum;
    for (Number number = minute * slotsOfMinute; number < (minute + 1) * slotsOfMinute; ++number)
        if (const float value = sample(number); !std::isnan(value)) sum.add({value, value, value}, 1);
    return sum.band().value_or(noBand);
}

Series::Number Series::firstSlot() const {
    return std::max<Number>(newest_ - slotsOfHour + 1, 0) / slotsOfMinute * slotsOfMinute;
}

void Series::visit(Moment from, Moment to, const Visit& see) const {
    const auto floor = [](Moment moment) {
        return std::max<Number>(std::chrono::floor<milliseconds>(moment.time_since_epoch()) / slot, 0);
    };
    const auto ceiling = [](Moment moment) {
        return (std::chrono::ceil<milliseconds>(moment.time_since_epoch()) + slot - milliseconds(1)) / slot;
    };
    const Number first = floor(from), end = std::min<Number>(ceiling(to), newest_ + 1);
    const Number firstMinute =
        std::max(first / slotsOfMinute, newest_ / slotsOfMinute - static_cast<Number>(minutes));
    for (Number m = std::max<Number>(firstMinute, 0); m * slotsOfMinute < std::min(end, firstSlot()); ++m)
        if (!std::isnan(band(m).mean))
            see(Moment(m * slotsOfMinute * slot), std::chrono::minutes(1), band(m));
    for (Number n = std::max(first, firstSlot()); n < end; ++n)
        if (const float value = sample(n); !std::isnan(value))
            see(Moment(n * slot), slot, {value, value, value});
}

std::optional<Band> Series::over(Moment from, Moment to) const {
    Sum sum;
    visit(from, to, [&](Moment begin, milliseconds length, const Band& band) {
        const auto time = std::min<Moment>(begin + length, to) - std::max(begin, from);
        sum.add(band, std::chrono::duration<double>(time).count());
    });
    return sum.band();
}

}  // namespace metrics
