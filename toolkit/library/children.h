// The children of widgets. Inside the toolkit only.
#pragma once

#include <Xm/Xm.h>
#include <span>

// Gadgets included; none of a widget that is not composite. Valid until the widget gets or loses a child.
inline std::span<const Widget> zChildren(Widget widget) {
    WidgetList children = nullptr;
    Cardinal count = 0;
    if (XtIsComposite(widget)) XtVaGetValues(widget, XmNchildren, &children, XmNnumChildren, &count, nullptr);
    return {children, count};
}
