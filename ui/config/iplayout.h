// Layout and enabling rules of the "1577" page.
#pragma once

#include "toolkit/controls/board.h"

extern const zLayout ip1577PageLayout;

// Conditions that the rules need.
enum IpCondition : unsigned {
    ipEnabled = 1,      // "Enable" of the client is on
    serverUsed = 2,     // "PVC Only" is off
    serverForeign = 4,  // "Enable" of the ARP server is off: the server is another host
};
extern const std::span<const zEnableRow> ip1577PageRules;
extern const std::span<const zNeedRow> ip1577PageNeeds;  // how the conditions come to hold
