#include "toolkit/place.h"

#include <X11/IntrinsicP.h>
// after it:
#include <X11/CoreP.h>
#include <X11/Xft/Xft.h>
#include <Xm/Protocols.h>
#include <Xm/VendorS.h>
#include <Xm/Xm.h>
#include <algorithm>

// Exported by the library, but in no header of it: it keeps one XftDraw per window and never frees it.
extern "C" {
XftDraw* _XmXftDrawCreate(Display* display, Window window);
void _XmXftDrawDestroy(Display* display, Window window, XftDraw* draw);
}

namespace {

void freeDraws(Widget widget) {
    if (!XtIsWidget(widget)) return;  // gadgets draw into their parent's window
    if (XtIsRealized(widget)) {
        Display* display = XtDisplay(widget);
        _XmXftDrawDestroy(display, XtWindow(widget), _XmXftDrawCreate(display, XtWindow(widget)));
    }
    for (Cardinal i = 0; i < widget->core.num_popups; ++i) freeDraws(widget->core.popup_list[i]);
    if (!XtIsComposite(widget)) return;
    WidgetList children = nullptr;
    Cardinal count = 0;
    XtVaGetValues(widget, XmNchildren, &children, XmNnumChildren, &count, nullptr);
    for (Cardinal i = 0; i < count; ++i) freeDraws(children[i]);
}

Atom closeRequest(Widget shell) {
    return XInternAtom(XtDisplay(shell), "WM_DELETE_WINDOW", False);
}

}  // namespace

void zCentre(Widget shell) {
    Dimension width = 0, height = 0;
    XtVaGetValues(shell, XmNwidth, &width, XmNheight, &height, nullptr);
    const Screen* screen = XtScreen(shell);
    const int x = std::max(0, (WidthOfScreen(screen) - width) / 2);
    const int y = std::max(0, (HeightOfScreen(screen) - height) / 2);
    XtVaSetValues(shell, XmNx, x, XmNy, y, nullptr);
}

void zHearClose(Widget shell, void (*asked)(Widget, void*, void*), void* data) {
    XmAddWMProtocolCallback(shell, closeRequest(shell), asked, data);
}

void zDestroyShell(Widget shell) {
    freeDraws(shell);
    // Inside a handler the destruction waits for the handler's end, and a nested loop may run before.
    if (XmIsVendorShell(shell)) {
        Atom request = closeRequest(shell);
        XmRemoveWMProtocols(shell, &request, 1);
    }
    XtDestroyWidget(shell);
}
