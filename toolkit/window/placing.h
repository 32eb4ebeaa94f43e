// What the user wants of the main window: options on the command line, or resources of the program.
#pragma once

#include "toolkit/display/widget.h"

#include <string>

struct _XDisplay;  // Xlib's Display

struct zPlacing {
    std::string place;  // "+X+Y", with "-" from the right or lower edge; empty: the program's own
    std::string title;  // empty: the program's own
    bool iconic = false;
};

// Reads the place, and hides the geometry from all shells: what it says of sizes is not for them, and with a
// size of 0 the library ends the program. To be called before the first shell is made. `refused` gets a
// geometry that is none.
std::string zTakePlace(_XDisplay* display, std::string& refused);

// Reads the rest. `root` is the program's first shell.
void zReadPlacing(Widget root, zPlacing& placing);
