#include "toolkit/plot/plotscale.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double steps[] = {1, 2, 5, 10};
constexpr double leastFixed = 1, mostFixed = 5e9;

}  // namespace

double zRoundAbove(double value) {
    if (!(value > 1)) return 1;
    const double power = std::pow(10, std::floor(std::log10(value)));
    for (const double step : steps)
        // A power of ten that was computed may be a little off.
        if (const double round = std::round(step * power); round >= value) return round;
    return std::round(20 * power);
}

bool zPlotScale::set(double maximum) {
    less_ = false;
    if (maximum == maximum_) return false;
    maximum_ = maximum;
    return true;
}

bool zPlotScale::follow(zPlotTime now, double largest) {
    if (fixed_) return false;
    const double needed = zRoundAbove(largest);
    if (needed >= maximum_) return set(needed);
    if (!less_) {
        less_ = true;
        since_ = now;
        needed_ = needed;
    }
    needed_ = std::max(needed_, needed);
    return now - since_ >= holds && set(needed_);
}

bool zPlotScale::fit(double largest) {
    return !fixed_ && set(zRoundAbove(largest));
}

void zPlotScale::fix(bool larger) {
    fixed_ = true;
    // 1.5 and 2.5 lie between a round number and its neighbours.
    const double next = zRoundAbove(larger ? maximum_ * 1.5 : maximum_ / 2.5);
    set(std::clamp(next, leastFixed, mostFixed));
}

void zPlotScale::release(double largest) {
    fixed_ = false;
    fit(largest);
}
