// The layouts of the statistics pages. The pages find their controls by name.
#pragma once

#include "toolkit/controls/layout.h"

constexpr int statsPageWidth = 290, statsPageHeight = 220;  // dialog units; the room that the notebook has

// Shown in address fields until an address is known.
constexpr const char* noPrefix = "47:00:00:00:00:00:00:00:00:00:00:00:00";
constexpr const char* noEsi = "00:00:00:00:00:00-00";

extern const zLayout signallingStatsLayout, aal5StatsLayout, lecStatsLayout, lesStatsLayout, lecsStatsLayout,
    ip1577StatsLayout;
