// A plot as a file: on white, with the time, the scales and the cursor that it has on the screen.
#pragma once

#include "toolkit/plot/plotpicture.h"

#include <string>
#include <string_view>
#include <vector>

enum class zPlotForm { png, svg, pdf };

// By the end of a name, in whatever case: ".svg" and ".pdf"; anything else is PNG.
zPlotForm zPlotFormOf(std::string_view fileName);

// The bytes of the file. `heading`: lines above the plot, of which the first is the document's title.
std::string zPlotFile(const zPlotPicture& picture, zPlotForm form, const std::vector<std::string>& heading);
