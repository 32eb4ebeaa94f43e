// Layout and enabling rules of the "LECS" page.
#pragma once

#include "toolkit/controls/board.h"

extern const zLayout lecsPageLayout;

// Conditions that the rules need.
enum LecsCondition : unsigned {
    lecsEnabled = 1,  // "Enable" is on
};
extern const std::span<const zEnableRow> lecsPageRules;
extern const std::span<const zNeedRow> lecsPageNeeds;  // how the conditions come to hold
