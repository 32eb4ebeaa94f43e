// What a lamp looks like: its three states differ in shape, not in colour alone. Lit is a check mark in a
// solid frame, unlit an empty ring in it, greyed a dash in a dotted one. Inside the toolkit only.
#pragma once

#include <Xm/Xm.h>

enum class zLampShape { greyed, unlit, lit };

struct zLampFace {
    zLampShape shape;
    Pixel glass, sign, frame;
    int width, height;  // pixels
};

// Drawn once per display, and owned by the toolkit.
Pixmap zDrawnLamp(Widget lamp, const zLampFace& face);
