#include "toolkit/controls/button.h"

#include "toolkit/controls/rowwidget.h"

#include <Xm/PushB.h>

zBitmapButton::zBitmapButton(Widget board, const zRect& place, const zControlRow& row) : zControl(row) {
    const zXmText text(row.text);
    zResources resources(place);
    resources.set(XmNlabelString, text).set(XmNrecomputeSize, False);
    resources.set(XmNnavigationType, XmEXCLUSIVE_TAB_GROUP);
    attach(zMakeWidget(xmPushButtonWidgetClass, board, row, resources));
    if (const Pixmap picture = zPixmapOf(widget(), row.picture, zBackground(widget())))
        XtVaSetValues(widget(), XmNlabelType, XmPIXMAP_AND_STRING, XmNlabelPixmap, picture, nullptr);
    listen(XmNactivateCallback, [](zControl& self, void*) {
        if (const auto handler = static_cast<zBitmapButton&>(self).onClick) handler();
    });
}
