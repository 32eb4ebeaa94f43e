#include "toolkit/plot/plotscale.h"

#include <algorithm>

namespace {

constexpr double steps[] = {1, 2, 5, 10};
constexpr double leastFixed = 1, mostFixed = 5e9, mostShown = 1e30;

}  // namespace

double zRoundAbove(double value) {
    if (!(value > 1)) return 1;
    value = std::min(value, mostShown);
    double power = 1;
    while (power * 10 <= value) power *= 10;
    return power * *std::ranges::find_if(steps, [&](double step) { return step * power >= value; });
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
