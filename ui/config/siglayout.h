// Layout and enabling rules of the "Signalling" page.
#pragma once

#include "toolkit/controls/board.h"

extern const zLayout signalPageLayout;

// Conditions that the rules need.
enum SignalCondition : unsigned {
    registered = 1,    // "Enable Address Registration" is on: the prefix is learned from the switch
    unregistered = 2,  // it is off: the prefix is typed
};
extern const std::span<const zEnableRow> signalPageRules;
extern const std::span<const zNeedRow> signalPageNeeds;  // how the conditions come to hold
