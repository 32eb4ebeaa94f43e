// Every picture of the program, by resource number.
#pragma once

#include "toolkit/picture.h"

#include <span>

enum PictureId {
    programIcon = 502,
    closeBitmap = 506,
    setupBitmap = 507,
    statsBitmap = 508,
    globalBitmap = 509,
};

std::span<const zPictureRow> programPictures();

// The lines of app-defaults/Tarvolin, ended by null: for hosts on which the file is not installed.
extern const char* const fallbackResources[];
