// A value that is plotted.
#pragma once

#include "metrics/rates.h"
#include "metrics/sampler.h"
#include "metrics/series.h"
#include "toolkit/plot/plotseries.h"

#include <functional>
#include <memory>
#include <string>

struct PlotLine {
    std::string name, unit;
    std::shared_ptr<const metrics::Series> series;
    std::function<metrics::Rate()> last;  // the newest value, or why there is none
};

// Without the adapter, which the window's title has, and without the "/s", which the unit has.
std::string plotNameOf(const metrics::Subject& subject);

// Of a value that is watched for as long as the line is kept.
PlotLine plotLineOf(std::shared_ptr<const metrics::Watched> watched);

// The same for the toolkit.
zPlotSeries plotSeriesOf(const PlotLine& line);

zPlotTime plotTimeOf(metrics::Moment moment);
