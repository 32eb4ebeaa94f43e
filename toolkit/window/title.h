// Titles of shells, as window managers show them. Inside the toolkit only.
#pragma once

#include "toolkit/display/widget.h"

#include <string>

// Gives a shell its title, for its icon, too. It is UTF-8, whatever the locale; a text that is not is taken
// as Latin-1. Control characters are left out, and so is a last character that is cut short.
void zSetTitle(Widget shell, const std::string& title);

// Tells the title of a realized shell to those window managers that read UTF-8: the library tells only those
// that read compound text.
void zTellTitle(Widget shell);
