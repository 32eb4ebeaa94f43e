// How large the fonts are. Inside the toolkit only.
//
// The resources describe the fonts "plain" and "bold" in one size, "small" and that of tables in smaller
// ones. What the user has set stays: a size for one of them, or for plain and bold together ("*fontSize").
// Otherwise the size is the one of the resources, or on a screen on which the largest dialog has no room the
// largest one at which it has, as long as its fields are high enough to be read.
#pragma once

#include "toolkit/controls/layout.h"

#include <string>
#include <vector>

struct _XDisplay;  // Xlib's Display

// Sets the sizes in the resources, before the first font is opened. `largest` is in dialog units of the plain
// font, without a size: nothing has to fit. Returns a line for each size that is refused; the usual one
// counts in its place.
std::vector<std::string> zChooseFontSizes(_XDisplay* display, const zRect& largest);
