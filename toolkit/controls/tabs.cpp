#include "toolkit/controls/tabs.h"

#include "toolkit/library/children.h"
#include "toolkit/library/exposure.h"

#include <Xm/TabBox.h>
#include <Xm/TabStack.h>

Widget zMakeTabs(Widget board, const zControlRow& row, zResources& resources) {
    resources.set(XmNuniformTabSize, False).set(XmNtabStyle, XmTABS_BEVELED);
    resources.set(XmNmarginWidth, 0).set(XmNmarginHeight, 0);
    resources.set(XmNnavigationType, XmEXCLUSIVE_TAB_GROUP);
    const Widget tabs = zMakeWidget(xmTabStackWidgetClass, board, row, resources);

    // The focus is on a child of the tab box, which would use Return itself and does not handle Escape.
    static const XtTranslations keys = XtParseTranslationTable(
        "<Key>osfActivate: PrimitiveParentActivate()\n<Key>Return: PrimitiveParentActivate()\n"
        "<Key>osfCancel: PrimitiveParentCancel()");
    for (const Widget box : zChildren(tabs)) {
        if (!XtIsSubclass(box, xmTabBoxWidgetClass)) continue;
        for (const Widget focused : zChildren(box)) {
            XtOverrideTranslations(focused, keys);
            zRepaintWhole(focused);
        }
    }
    return tabs;
}
