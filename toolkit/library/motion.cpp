#include "toolkit/library/motion.h"

#include <Xm/Xm.h>
#include <algorithm>

void zPropagateMotion(Widget control) {
    if (!XtIsWidget(control) || !XtIsRealized(control)) return;
    XSetWindowAttributes attributes{};
    attributes.do_not_propagate_mask = KeyPressMask | KeyReleaseMask | ButtonPressMask | ButtonReleaseMask;
    XChangeWindowAttributes(XtDisplay(control), XtWindow(control), CWDontPropagate, &attributes);
    if (!XtIsComposite(control)) return;
    WidgetList children = nullptr;
    Cardinal count = 0;
    XtVaGetValues(control, XmNchildren, &children, XmNnumChildren, &count, nullptr);
    std::for_each_n(children, count, zPropagateMotion);
}
