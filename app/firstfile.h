// The first start on a system without a parameter file.
#pragma once

#include "change/configuration.h"
#include "toolkit/window/window.h"

#include <vector>

// If there is no parameter file, asks whether to write one for these adapters (0 to 3), or without any for
// all four, and does so. A failure is shown in a box. To be called before the configuration is edited.
void offerFirstFile(zWindow& window, Configuration& configuration, const std::vector<int>& adapters);
