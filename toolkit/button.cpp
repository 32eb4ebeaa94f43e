#include "toolkit/button.h"

#include "toolkit/make.h"

#include <Xm/PushB.h>

zBitmapButton::zBitmapButton(Widget board, const zRect& place, const zControlRow& row) : zControl(row) {
    const zXmText text(row.text);
    zPlaced resources(place);
    resources.set(XmNlabelString, text).set(XmNrecomputeSize, False);
    resources.set(XmNnavigationType, XmEXCLUSIVE_TAB_GROUP);
    attach(zMake(xmPushButtonWidgetClass, board, row, resources));
    if (const Pixmap picture = zPixmapOf(widget(), row.picture, zBackground(widget())))
        XtVaSetValues(widget(), XmNlabelType, XmPIXMAP_AND_STRING, XmNlabelPixmap, picture, nullptr);
    listen(XmNactivateCallback, [](zControl& self, void*) {
        if (const auto handler = static_cast<zBitmapButton&>(self).onClick) handler();
    });
}
