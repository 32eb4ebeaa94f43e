#include "toolkit/plot/plotlabels.h"

#include <cmath>
#include <cstdint>
#include <fmt/format.h>
#include <iterator>

using namespace std::chrono;

std::string zAxisLabel(double value, double maximum) {
    constexpr struct {
        double from, unit;
        const char* sign;
    } forms[] = {{1e9, 1e9, " G"}, {1e6, 1e6, " M"}, {1e4, 1e3, " k"}};
    for (const auto& form : forms)
        if (maximum >= form.from && value > 0) return fmt::format("{:.4g}{}", value / form.unit, form.sign);
    return fmt::format("{:.4g}", value);
}

std::string zValueLabel(double value) {
    constexpr double exact = 9e15;
    if (value == std::floor(value) || value >= 1000)
        return value < exact ? fmt::to_string(static_cast<std::int64_t>(std::nearbyint(value)))
                             : fmt::format("{:.0f}", value);
    return fmt::format("{:.{}f}", value, value < 10 ? 2 : 1);
}

std::string zBandLabel(const zPlotBand& band) {
    std::string mean = zValueLabel(band.mean);
    if (band.least == band.most) return mean;
    return fmt::format("{} ({} to {})", mean, zValueLabel(band.least), zValueLabel(band.most));
}

std::string zTimeLabel(zPlotTime local, bool withSeconds) {
    const hh_mm_ss time(floor<seconds>(local) - floor<days>(local));
    if (!withSeconds) return fmt::format("{:02}:{:02}", time.hours().count(), time.minutes().count());
    return fmt::format("{:02}:{:02}:{:02}", time.hours().count(), time.minutes().count(),
                       time.seconds().count());
}

zPlotTime zTimeStep(zPlotTime each, int pixels) {
    constexpr seconds steps[] = {1s,    2s,    5s,    10s, 15s, 30s, 1min, 2min, 5min,
                                 10min, 15min, 30min, 1h,  2h,  3h,  4h,   6h,   12h};
    for (const seconds step : steps)
        if (step >= each * pixels) return step;
    return 24h;
}
