// Numbers and times beside a plot.
#pragma once

#include "toolkit/plot/plotseries.h"

#include <string>

// On a scale that ends there, so that all its labels have one form.
std::string zAxisLabel(double value, double maximum);  // "2", "0.4", "200 k", "5 M"
std::string zValueLabel(double value);                 // "0.25", "12.5", "1234"
std::string zBandLabel(const zPlotBand& band);         // "120 (80 to 150)", or the one value

// A time of the wall clock in the local zone, as since the beginning of a day: "14:05" or "14:05:30".
std::string zTimeLabel(zPlotTime local, bool seconds);

// The distance of round times of which so many pixels' labels have room, a pixel standing for `each`.
zPlotTime zTimeStep(zPlotTime each, int pixels);
