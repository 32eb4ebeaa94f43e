// Modal message boxes with a single OK button.
#pragma once

#include "toolkit/application.h"

#include <string>

enum class zMessageStyle { warning, information };

// Shows the box in the middle of the screen and returns when it is dismissed (OK, Return, Escape, closing) or
// the application ends. `text` may have several lines, separated by '\n'.
void zMessageBox(zApplication& application, Widget parent, zMessageStyle style, const std::string& text,
                 const std::string& title);
