// What stands on the "LEC..." page, and when it is enabled.
#pragma once

#include "toolkit/controls/board.h"

extern const zLayout lecPageLayout;

// Conditions of the rules.
enum LecCondition : unsigned {
    clientEnabled = 1,  // "Enable" is on
    serversUsed = 2,    // "PVC Only" is off
};
extern const std::span<const zEnableRow> lecPageRules;
