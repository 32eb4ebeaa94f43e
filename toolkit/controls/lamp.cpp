#include "toolkit/controls/lamp.h"

#include "toolkit/controls/lampface.h"
#include "toolkit/controls/rowwidget.h"
#include "toolkit/library/truecolour.h"

#include <Xm/ToggleB.h>
#include <cstdlib>

namespace {

// Foreground or background, whichever is further from the glass in brightness, as the eye weighs it.
Pixel signOn(Widget widget, Pixel glass, Pixel foreground) {
    const auto brightness = [widget](Pixel pixel) {
        const XColor rgb = zColourOf(widget, pixel);
        return 3 * rgb.red + 6 * rgb.green + rgb.blue;
    };
    const Pixel background = zBackground(widget);
    const int on = brightness(glass);
    return std::abs(brightness(foreground) - on) >= std::abs(brightness(background) - on) ? foreground
                                                                                          : background;
}

}  // namespace

zLamp::zLamp(Widget board, const zRect& place, const zControlRow& row) : zControl(row) {
    const zXmText text(row.text);
    zResources resources(place);
    resources.set(XmNlabelString, text).set(XmNrecomputeSize, False).set(XmNtraversalOn, False);
    resources.set(XmNindicatorOn, XmINDICATOR_NONE).set(XmNfillOnSelect, True);
    attach(zMakeWidget(xmToggleButtonWidgetClass, board, row, resources));
    Pixel lit = 0, unlit = 0, foreground = 0;
    XtVaGetValues(widget(), XmNselectColor, &lit, XmNunselectColor, &unlit, XmNforeground, &foreground,
                  nullptr);
    const int height = place.height * 9 / 16;
    const auto face = [&](zLampShape shape, Pixel glass) {
        return zDrawnLamp(widget(), {shape, glass, signOn(widget(), glass, foreground), foreground,
                                     2 * height - 1, height});
    };
    const Pixmap grey = face(zLampShape::greyed, zBackground(widget()));
    XtVaSetValues(widget(), XmNlabelType, *row.text ? XmPIXMAP_AND_STRING : XmPIXMAP, XmNlabelPixmap,
                  face(zLampShape::unlit, unlit), XmNselectPixmap, face(zLampShape::lit, lit),
                  XmNlabelInsensitivePixmap, grey, XmNselectInsensitivePixmap, grey, nullptr);
    XtUninstallTranslations(widget());
}

void zLamp::check(bool on) {
    if (on != checked()) XmToggleButtonSetState(widget(), on, False);
}

bool zLamp::checked() const {
    return XmToggleButtonGetState(widget());
}
