// What stands on the "LECS" page, and when it is enabled.
#pragma once

#include "toolkit/controls/board.h"

extern const zLayout lecsPageLayout;

// Conditions of the rules.
enum LecsCondition : unsigned {
    lecsEnabled = 1,  // "Enable" is on
};
extern const std::span<const zEnableRow> lecsPageRules;
