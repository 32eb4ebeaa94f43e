// Menus that are used by keys. Inside the toolkit only.
#pragma once

#include <X11/Intrinsic.h>

// The first item of a menu that is shown is marked and takes the keys, as when the library itself shows a
// menu because of a key.
void zExpectKeys(Widget menu);
