// Modal message boxes.
#pragma once

#include "toolkit/window/application.h"

#include <string>

enum class zMessageStyle { warning, information };

// Shows a box with an OK button in the middle of the screen. Returns when it is dismissed (by OK, Return,
// Escape or the window manager) or the application ends. `text` may have several lines, separated by '\n'.
void zMessageBox(zApplication& application, Widget parent, zMessageStyle style, const std::string& text,
                 const std::string& title);

// Asks a question with the buttons OK and Cancel. True for OK or Return, otherwise false.
bool zQuestionBox(zApplication& application, Widget parent, const std::string& text,
                  const std::string& title);
