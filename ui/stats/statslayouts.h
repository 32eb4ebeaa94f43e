// The layouts of the statistics pages. The pages find their controls by name.
#pragma once

#include "toolkit/controls/layout.h"

constexpr int statsPageWidth = 290, statsPageHeight = 220;  // dialog units; the room that the notebook has

// In a larger window tables take the room, and group boxes the width.
constexpr zMore takesAll{.wider = 100, .higher = 100};
constexpr zMore takesWidth{.wider = 100};

// Shown in address fields until an address is known.
constexpr const char* noPrefix = "47:00:00:00:00:00:00:00:00:00:00:00:00";
constexpr const char* noEsi = "00:00:00:00:00:00-00";

extern const zLayout signallingStatsLayout, aal5StatsLayout, lecStatsLayout, lesStatsLayout, lecsStatsLayout,
    ip1577StatsLayout;
