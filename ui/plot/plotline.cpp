#include "ui/plot/plotline.h"

#include <utility>

using std::chrono::milliseconds;

std::string plotNameOf(const metrics::Subject& subject) {
    std::string name = nameOf(subject);
    if (subject.isRate()) name.resize(name.rfind('/'));
    return name.substr(name.find_first_of("./") + 1);
}

PlotLine plotLineOf(std::shared_ptr<const metrics::Watched> watched) {
    return {.name = plotNameOf(watched->subject()),
            .unit = unitOf(watched->subject()),
            .series = {watched, &watched->series()},
            .last = [watched] { return watched->last(); }};
}

zPlotTime plotTimeOf(metrics::Moment moment) {
    return std::chrono::floor<milliseconds>(moment.time_since_epoch());
}

zPlotSeries plotSeriesOf(const PlotLine& line) {
    const auto visit = [series = line.series](zPlotTime from, zPlotTime to, const zPlotSeries::See& see) {
        series->visit(metrics::Moment(from), metrics::Moment(to),
                      [&see](metrics::Moment begin, milliseconds length, const metrics::Band& band) {
                          see(plotTimeOf(begin), length, {band.least, band.mean, band.most});
                      });
    };
    const auto present = [last = line.last]() -> std::optional<double> {
        const metrics::Rate now = last();
        if (const double* value = std::get_if<double>(&now)) return *value;
        return {};
    };
    return {line.name, line.unit, visit, present};
}
