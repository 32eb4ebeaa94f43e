// The layout of a plot window.
#pragma once

#include "toolkit/controls/layout.h"

enum PlotControl { plotPLT = 820, plotSaveBTN = 821, plotCloseBTN = 822 };

extern const zLayout plotLayout;
