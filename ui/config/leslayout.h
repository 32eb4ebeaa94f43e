// What stands on the "LES..." page, and when it is enabled.
#pragma once

#include "toolkit/controls/board.h"

extern const zLayout lesPageLayout;

// Conditions of the rules.
enum LesCondition : unsigned {
    serverEnabled = 1,  // "Enable" is on
};
extern const std::span<const zEnableRow> lesPageRules;
