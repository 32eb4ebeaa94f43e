// What the user can choose of the look of cells, which tables and plots share. Inside the toolkit only.
#pragma once

#include <X11/Intrinsic.h>

struct zCellResources {
    Pixel select, grid;
    char* font;  // a Fontconfig pattern, which lives as long as the display
};

// The resources selectColor, gridColor and tableFont of a canvas.
zCellResources zCellResourcesOf(Widget canvas);
