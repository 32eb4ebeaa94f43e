// Control ids of the global settings.
#pragma once

enum GlobalControl {
    globalPagesNB = 100,
    globalOkBTN = 101,
    globalCancelBTN = 102,

    globalGB = 633,  // the page's
    ptToPtED = 694,
    ptToMptED = 695,
    endPtsED = 696,
    apiCB = 697,
    signalingCB = 698,
    ilmiCB = 699,
    refreshRateCBO = 700,
    advancedCB = 701,
    fontBTN = 702,
};
