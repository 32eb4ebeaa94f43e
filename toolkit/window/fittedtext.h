// A text of several lines that fits a box on its screen. Inside the toolkit only.
#pragma once

#include "toolkit/display/widget.h"

#include <string>

struct zFittedText {
    std::string text;
    const char* font;  // "bold", or "small" when the screen has no room for that
};

// Lines that are too wide for the screen even in the small font are broken, after a blank or a slash if there
// is one. Of a text that is too high even so the middle is left out.
zFittedText zFitText(Widget shell, const std::string& text);
