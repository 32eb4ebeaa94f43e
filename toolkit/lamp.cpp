#include "toolkit/lamp.h"

#include "toolkit/make.h"

#include <Xm/ToggleB.h>

zLamp::zLamp(Widget board, const zRect& place, const zControlRow& row) : zControl(row) {
    const zXmText text(row.text);
    zPlaced resources(place);
    resources.set(XmNlabelString, text).set(XmNrecomputeSize, False).set(XmNtraversalOn, False);
    resources.set(XmNindicatorOn, XmINDICATOR_NONE).set(XmNfillOnSelect, True);
    attach(zMake(xmToggleButtonWidgetClass, board, row, resources));
    if (const Pixmap picture = zPixmapOf(widget(), row.picture, zBackground(widget())))
        XtVaSetValues(widget(), XmNlabelType, *row.text ? XmPIXMAP_AND_STRING : XmPIXMAP, XmNlabelPixmap,
                      picture, XmNselectPixmap, picture, nullptr);
    XtUninstallTranslations(widget());
}

void zLamp::check(bool on) {
    if (on != checked()) XmToggleButtonSetState(widget(), on, False);
}

bool zLamp::checked() const {
    return XmToggleButtonGetState(widget());
}
