// Layout and enabling rules of the "LEC..." page.
#pragma once

#include "toolkit/controls/board.h"

extern const zLayout lecPageLayout;

// Conditions that the rules need.
enum LecCondition : unsigned {
    clientEnabled = 1,  // "Enable" is on
    serversUsed = 2,    // "PVC Only" is off
};
extern const std::span<const zEnableRow> lecPageRules;
extern const std::span<const zNeedRow> lecPageNeeds;  // how the conditions come to hold
