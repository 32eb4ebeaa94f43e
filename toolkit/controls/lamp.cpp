#include "toolkit/controls/lamp.h"

#include "toolkit/controls/rowwidget.h"

#include <Xm/ToggleB.h>

zLamp::zLamp(Widget board, const zRect& place, const zControlRow& row) : zControl(row) {
    const zXmText text(row.text);
    zResources resources(place);
    resources.set(XmNlabelString, text).set(XmNrecomputeSize, False).set(XmNtraversalOn, False);
    resources.set(XmNindicatorOn, XmINDICATOR_NONE).set(XmNfillOnSelect, True);
    attach(zMakeWidget(xmToggleButtonWidgetClass, board, row, resources));
    Pixel lit = 0, unlit = 0;
    XtVaGetValues(widget(), XmNselectColor, &lit, XmNunselectColor, &unlit, nullptr);
    const auto picture = [&](Pixel glass) { return zPixmapOf(widget(), row.picture, glass); };
    if (const Pixmap grey = picture(zBackground(widget())))
        XtVaSetValues(widget(), XmNlabelType, *row.text ? XmPIXMAP_AND_STRING : XmPIXMAP, XmNlabelPixmap,
                      picture(unlit), XmNselectPixmap, picture(lit), XmNlabelInsensitivePixmap, grey,
                      XmNselectInsensitivePixmap, grey, nullptr);
    XtUninstallTranslations(widget());
}

void zLamp::check(bool on) {
    if (on != checked()) XmToggleButtonSetState(widget(), on, False);
}

bool zLamp::checked() const {
    return XmToggleButtonGetState(widget());
}
