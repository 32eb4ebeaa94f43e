#include "toolkit/colours.h"

#include <bit>

namespace {

unsigned short field(Pixel pixel, unsigned long mask) {
    const unsigned long value = (pixel & mask) >> std::countr_zero(mask);
    return static_cast<unsigned short>(value * 0xffff / (mask >> std::countr_zero(mask)));
}

}  // namespace

XColor zColourOf(Widget widget, Pixel pixel) {
    const Visual* visual = DefaultVisualOfScreen(XtScreen(widget));
    XColor colour{};
    colour.pixel = pixel;
    if (visual->c_class == TrueColor) {
        colour.red = field(pixel, visual->red_mask);
        colour.green = field(pixel, visual->green_mask);
        colour.blue = field(pixel, visual->blue_mask);
    } else {
        XQueryColor(XtDisplay(widget), DefaultColormapOfScreen(XtScreen(widget)), &colour);
    }
    return colour;
}
