// Numbers and times beside a plot.
#pragma once

#include "toolkit/plot/plotseries.h"

#include <string>

// All labels of a scale, which ends at `maximum`, have one form.
std::string zAxisLabel(double value, double maximum);  // "2", "0.4", "200 k", "5 M"
std::string zValueLabel(double value);                 // "0.25", "12.5", "1234"
std::string zBandLabel(const zPlotBand& band);         // "120 (80 to 150)", or the one value

// The time of day, of a time since the beginning of any day in the local zone: "14:05" or "14:05:30".
std::string zTimeLabel(zPlotTime local, bool seconds);

// The distance of round times whose labels, so many pixels wide, have room; a pixel stands for `each`.
zPlotTime zTimeStep(zPlotTime each, int pixels);
