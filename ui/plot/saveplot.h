// Writing a plot into a file.
#pragma once

#include "toolkit/plot/plot.h"
#include "toolkit/window/window.h"

#include <string>
#include <vector>

// Asks for the file's name, whose end says the form, and replaces or creates the file as a whole; a failure
// is told in a box. The plot is written as it stands when this is called.
void savePlot(zWindow& window, const zPlot& plot, const std::string& adapter);

// The lines above a plot: units, adapter and host; then its times, with the zone.
std::vector<std::string> plotHeading(const zPlotPicture& picture, const std::string& adapter);
