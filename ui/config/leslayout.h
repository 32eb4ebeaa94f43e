// Layout and enabling rules of the "LES..." page.
#pragma once

#include "toolkit/controls/board.h"

extern const zLayout lesPageLayout;

// Conditions that the rules need.
enum LesCondition : unsigned {
    serverEnabled = 1,  // "Enable" is on
};
extern const std::span<const zEnableRow> lesPageRules;
extern const std::span<const zNeedRow> lesPageNeeds;  // how the conditions come to hold
