// What a pixel value looks like. Inside the toolkit only.
#pragma once

#include <X11/Intrinsic.h>

// Red, green and blue of a pixel, 16 bits each. Does not wait for the server on a true colour display.
XColor zColourOf(Widget widget, Pixel pixel);
