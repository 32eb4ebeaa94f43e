// The program's pictures by resource number.
#pragma once

enum PictureId {
    programIcon = 502,  // of every window, on the desktop
    globalIcon = 505,   // of the global settings
    statsIcon = 504,    // of the statistics windows
    alertIcon = 503,    // of windows that call for attention
    closeBitmap = 506,
    setupBitmap = 507,
    statsBitmap = 508,
    globalBitmap = 509,
    addBitmap = 510,
    modifyBitmap = 511,
    deleteBitmap = 512,
    insertBitmap = 514,
    okBitmap = 535,
    cancelBitmap = 536,
};
