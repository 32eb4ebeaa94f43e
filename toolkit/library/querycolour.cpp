#include "toolkit/library/querycolour.h"

#include <bit>

namespace {

unsigned short field(Pixel pixel, unsigned long mask) {
    const unsigned long value = (pixel & mask) >> std::countr_zero(mask);
    return static_cast<unsigned short>(value * 0xffff / (mask >> std::countr_zero(mask)));
}

}  // namespace

// Replaces the function of libX11, for Motif, too, which calls it for each text that it draws. On a true
// colour display a pixel value consists of the colour's components: no round trip is needed.
extern "C" int XQueryColor(Display* display, Colormap colours, XColor* colour) {
    const Screen* screen = DefaultScreenOfDisplay(display);
    const Visual* visual = DefaultVisualOfScreen(screen);
    if (visual->c_class != TrueColor || colours != DefaultColormapOfScreen(screen))
        return XQueryColors(display, colours, colour, 1);
    colour->red = field(colour->pixel, visual->red_mask);
    colour->green = field(colour->pixel, visual->green_mask);
    colour->blue = field(colour->pixel, visual->blue_mask);
    colour->flags = DoRed | DoGreen | DoBlue;
    return 1;
}

XColor zColourOf(Widget widget, Pixel pixel) {
    XColor colour{};
    colour.pixel = pixel;
    XQueryColor(XtDisplay(widget), DefaultColormapOfScreen(XtScreen(widget)), &colour);
    return colour;
}
