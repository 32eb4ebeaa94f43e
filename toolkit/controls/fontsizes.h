// How large the fonts are. Inside the toolkit only.
//
// The resources describe the fonts "plain", "bold", "small" and "fixed", and leave their sizes out: whatever
// size stands there is the user's and stays, for one of them or for plain and bold together ("*fontSize").
// Otherwise "plain" and "bold" have 12 points, the others less, or on a screen on which the largest dialog
// has no room the largest size at which it has, as long as its fields are high enough to be read.
#pragma once

#include "toolkit/controls/layout.h"

#include <string>
#include <vector>

struct _XDisplay;  // Xlib's Display

// Sets the sizes in the resources, before the first font is opened. `largest` is in dialog units of the plain
// font, without a size: nothing has to fit. Returns a line for each size that is refused, where the
// usual one counts in its place, and for each font of the X server ("*font").
std::vector<std::string> zChooseFontSizes(_XDisplay* display, const zRect& largest);
