#include "toolkit/library/xftdraws.h"

#include "toolkit/library/children.h"

#include <X11/IntrinsicP.h>
// after it:
#include <X11/CoreP.h>
#include <X11/Xft/Xft.h>

// Exported by libXm, but not declared in its headers.
extern "C" {
XftDraw* _XmXftDrawCreate(Display* display, Window window);
void _XmXftDrawDestroy(Display* display, Window window, XftDraw* draw);
}

XftDraw* zXftDrawOf(Widget widget) {
    return _XmXftDrawCreate(XtDisplay(widget), XtWindow(widget));
}

void zFreeXftDraws(Widget widget) {
    if (!XtIsWidget(widget)) return;  // gadgets draw into their parent's window
    if (XtIsRealized(widget)) _XmXftDrawDestroy(XtDisplay(widget), XtWindow(widget), zXftDrawOf(widget));
    for (Cardinal i = 0; i < widget->core.num_popups; ++i) zFreeXftDraws(widget->core.popup_list[i]);
    for (const Widget child : zChildren(widget)) zFreeXftDraws(child);
}
