#include "toolkit/window/shell.h"

#include "toolkit/library/xftdraws.h"

#include <X11/Xatom.h>
#include <X11/Xutil.h>
#include <Xm/Protocols.h>
#include <Xm/VendorS.h>
#include <Xm/Xm.h>
#include <algorithm>
#include <unistd.h>

namespace {

Atom closeRequest(Widget shell) {
    return XInternAtom(XtDisplay(shell), "WM_DELETE_WINDOW", False);
}

}  // namespace

void zCentreShell(Widget shell) {
    Dimension width = 0, height = 0;
    XtVaGetValues(shell, XmNwidth, &width, XmNheight, &height, nullptr);
    const Screen* screen = XtScreen(shell);
    const int x = std::max(0, (WidthOfScreen(screen) - width) / 2);
    const int y = std::max(0, (HeightOfScreen(screen) - height) / 2);
    XtVaSetValues(shell, XmNx, x, XmNy, y, nullptr);
}

void zMapShell(Widget shell) {
    Display* display = XtDisplay(shell);
    String name = nullptr, ofClass = nullptr;
    XtGetApplicationNameAndClass(display, &name, &ofClass);
    XClassHint names{const_cast<char*>(name), const_cast<char*>(ofClass)};
    XSetClassHint(display, XtWindow(shell), &names);  // the library's have the shell's own name
    const long process = ::getpid();
    XChangeProperty(display, XtWindow(shell), XInternAtom(display, "_NET_WM_PID", False), XA_CARDINAL, 32,
                    PropModeReplace, reinterpret_cast<const unsigned char*>(&process), 1);
    XtMapWidget(shell);
}

void zOnCloseRequest(Widget shell, void (*asked)(Widget, void*, void*), void* data) {
    XmAddWMProtocolCallback(shell, closeRequest(shell), asked, data);
}

void zDestroyShell(Widget shell) {
    zFreeXftDraws(shell);
    // Within a callback, destruction is deferred to its end, and a nested loop may handle events before that.
    if (XmIsVendorShell(shell)) {
        Atom request = closeRequest(shell);
        XmRemoveWMProtocols(shell, &request, 1);
    }
    XtDestroyWidget(shell);
}
