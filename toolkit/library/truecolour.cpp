#include "toolkit/library/truecolour.h"

#include "toolkit/library/next.h"

#include <bit>

namespace {

// A pixel value on a true colour display consists of the colour's components.
bool consistsOfComponents(Display* display, Colormap colours) {
    const Screen* screen = DefaultScreenOfDisplay(display);
    return DefaultVisualOfScreen(screen)->c_class == TrueColor && colours == DefaultColormapOfScreen(screen);
}

unsigned short field(Pixel pixel, unsigned long mask) {
    const unsigned long value = (pixel & mask) >> std::countr_zero(mask);
    return static_cast<unsigned short>(value * 0xffff / (mask >> std::countr_zero(mask)));
}

unsigned long bits(unsigned short component, unsigned long mask) {
    return static_cast<unsigned long>(component) >> (16 - std::popcount(mask)) << std::countr_zero(mask);
}

}  // namespace

// These replace functions of libX11, also for the libraries that call them: no round trip is needed.
extern "C" {

int XQueryColor(Display* display, Colormap colours, XColor* colour) {
    if (!consistsOfComponents(display, colours)) return XQueryColors(display, colours, colour, 1);
    const Visual* visual = DefaultVisual(display, DefaultScreen(display));
    colour->red = field(colour->pixel, visual->red_mask);
    colour->green = field(colour->pixel, visual->green_mask);
    colour->blue = field(colour->pixel, visual->blue_mask);
    colour->flags = DoRed | DoGreen | DoBlue;
    return 1;
}

int XAllocColor(Display* display, Colormap colours, XColor* colour) {
    static auto* const ask = zNext<decltype(XAllocColor)>("XAllocColor");
    if (!consistsOfComponents(display, colours)) return ask(display, colours, colour);
    const Visual* visual = DefaultVisual(display, DefaultScreen(display));
    colour->pixel = bits(colour->red, visual->red_mask) | bits(colour->green, visual->green_mask) |
                    bits(colour->blue, visual->blue_mask);
    return XQueryColor(display, colours, colour);
}

// Names of colours stand in the server, numbers do not.
int XAllocNamedColor(Display* display, Colormap colours, const char* name, XColor* shown, XColor* exact) {
    static auto* const ask = zNext<decltype(XAllocNamedColor)>("XAllocNamedColor");
    if (name[0] != '#' || !consistsOfComponents(display, colours))
        return ask(display, colours, name, shown, exact);
    if (!XParseColor(display, colours, name, exact)) return 0;
    *shown = *exact;
    return XAllocColor(display, colours, shown);
}

// What was computed has not been allocated.
int XFreeColors(Display* display, Colormap colours, unsigned long* pixels, int count, unsigned long planes) {
    static auto* const ask = zNext<decltype(XFreeColors)>("XFreeColors");
    return consistsOfComponents(display, colours) ? 1 : ask(display, colours, pixels, count, planes);
}

}  // extern "C"

XColor zColourOf(Widget widget, Pixel pixel) {
    XColor colour{};
    colour.pixel = pixel;
    XQueryColor(XtDisplay(widget), DefaultColormapOfScreen(XtScreen(widget)), &colour);
    return colour;
}
