// Modal message boxes.
#pragma once

#include "toolkit/window/application.h"

#include <string>

enum class zMessageStyle { warning, information };

// Shows a box with an OK button in the middle of the screen and returns when it is dismissed (OK, Return, Escape, closing) or
// the application ends. `text` may have several lines, separated by '\n'.
void zMessageBox(zApplication& application, Widget parent, zMessageStyle style, const std::string& text,
                 const std::string& title);

// Asks a question with the buttons OK and Cancel: true for OK (also Return), false for anything else.
bool zQuestionBox(zApplication& application, Widget parent, const std::string& text,
                  const std::string& title);
