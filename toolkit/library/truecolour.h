// Colours of pixel values. Inside the toolkit only.
#pragma once

#include <X11/Intrinsic.h>

// Red, green and blue of a pixel, 16 bits each. On a true colour display without a round trip.
XColor zColourOf(Widget widget, Pixel pixel);
