// Every picture of the program, by resource number.
#pragma once

#include "resources/pictureids.h"
#include "toolkit/display/picture.h"

#include <span>

std::span<const zPictureRow> programPictures();

// The lines of app-defaults/Tarvolin, ended by null: for hosts on which the file is not installed.
extern const char* const fallbackResources[];
