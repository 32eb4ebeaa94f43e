// What the user can see of a widget, known without asking the server.
#include <Xm/TabStack.h>
#include <Xm/Xm.h>

// Exported by libXm, but not declared in its headers.
extern "C" Boolean _XmComputeVisibilityRect(Widget, XRectangle*, Boolean withBorder, Boolean scrolled);

// Replaces the function of libXm, which asks for every window beside the widget's whenever the focus moves.
// Of the program's windows only the pages of a notebook cover one another.
extern "C" XmVisibility XmGetVisibility(Widget widget) {
    XRectangle seen{};
    if (!widget || !_XmComputeVisibilityRect(widget, &seen, False, True)) return XmVISIBILITY_FULLY_OBSCURED;
    Dimension width = 0, height = 0;
    XtVaGetValues(widget, XmNwidth, &width, XmNheight, &height, nullptr);
    if (seen.width != width || seen.height != height) return XmVISIBILITY_PARTIALLY_OBSCURED;
    const Widget book = XtParent(widget);
    const bool below = XmIsTabStack(book) && XmTabStackGetSelectedTab(book) != widget;
    return below ? XmVISIBILITY_FULLY_OBSCURED : XmVISIBILITY_UNOBSCURED;
}
