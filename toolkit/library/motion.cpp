#include "toolkit/library/motion.h"

#include "toolkit/library/children.h"

void zPropagateMotion(Widget control) {
    if (!XtIsWidget(control) || !XtIsRealized(control)) return;
    XSetWindowAttributes attributes{};
    attributes.do_not_propagate_mask = KeyPressMask | KeyReleaseMask | ButtonPressMask | ButtonReleaseMask;
    XChangeWindowAttributes(XtDisplay(control), XtWindow(control), CWDontPropagate, &attributes);
    for (const Widget child : zChildren(control)) zPropagateMotion(child);
}
