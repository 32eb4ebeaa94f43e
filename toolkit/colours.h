// What a pixel value looks like. Inside the toolkit only.
#pragma once

#include <X11/Intrinsic.h>

// Red, green and blue of a pixel, 16 bits each. Where a pixel is made of three bit fields it is computed: asking the
// server costs a round trip.
XColor zColourOf(Widget widget, Pixel pixel);
