// The layouts of the statistics pages. Their controls have names, which the pages' tables use.
#pragma once

#include "toolkit/controls/layout.h"

constexpr int statsPageWidth = 290, statsPageHeight = 220;  // dialog units: what the notebook has room for

// What stands in address fields before anything is known.
constexpr const char* noPrefix = "47:00:00:00:00:00:00:00:00:00:00:00:00";
constexpr const char* noEsi = "00:00:00:00:00:00-00";

extern const zLayout signallingStatsLayout, aal5StatsLayout, lecStatsLayout, lesStatsLayout, lecsStatsLayout,
    ip1577StatsLayout;
