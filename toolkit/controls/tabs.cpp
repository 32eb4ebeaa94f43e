#include "toolkit/controls/tabs.h"

#include <Xm/TabBox.h>
#include <Xm/TabStack.h>
#include <span>

namespace {

std::span<const Widget> childrenOf(Widget widget) {
    WidgetList children = nullptr;
    Cardinal count = 0;
    XtVaGetValues(widget, XmNchildren, &children, XmNnumChildren, &count, nullptr);
    return {children, count};
}

}  // namespace

Widget zMakeTabs(Widget board, const zControlRow& row, zResources& resources) {
    resources.set(XmNuniformTabSize, False).set(XmNtabStyle, XmTABS_BEVELED);
    resources.set(XmNmarginWidth, 0).set(XmNmarginHeight, 0);
    resources.set(XmNnavigationType, XmEXCLUSIVE_TAB_GROUP);
    const Widget tabs = zMakeWidget(xmTabStackWidgetClass, board, row, resources);

    // The focus is on a child of the tab box, which would use Return itself and does not handle Escape.
    static const XtTranslations keys = XtParseTranslationTable(
        "<Key>osfActivate: PrimitiveParentActivate()\n<Key>Return: PrimitiveParentActivate()\n"
        "<Key>osfCancel: PrimitiveParentCancel()");
    for (const Widget box : childrenOf(tabs))
        if (XtIsSubclass(box, xmTabBoxWidgetClass))
            for (const Widget focused : childrenOf(box)) XtOverrideTranslations(focused, keys);
    return tabs;
}
