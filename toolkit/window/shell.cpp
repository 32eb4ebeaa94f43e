#include "toolkit/window/shell.h"

#include "toolkit/library/xftdraws.h"
#include "toolkit/window/title.h"

#include <X11/Xatom.h>
#include <X11/Xutil.h>
#include <Xm/Protocols.h>
#include <Xm/VendorS.h>
#include <Xm/Xm.h>
#include <algorithm>
#include <unistd.h>

namespace {

constexpr int titleBar = 24;  // of a window manager, about

Atom closeRequest(Widget shell) {
    return XInternAtom(XtDisplay(shell), "WM_DELETE_WINDOW", False);
}

// What the screen has more than the shell.
zSpot roomBeside(Widget shell) {
    Dimension width = 0, height = 0;
    XtVaGetValues(shell, XmNwidth, &width, XmNheight, &height, nullptr);
    const Screen* screen = XtScreen(shell);
    return {std::max(0, WidthOfScreen(screen) - width), std::max(0, HeightOfScreen(screen) - height)};
}

zSpot moveTo(Widget shell, const zSpot& spot) {
    XtVaSetValues(shell, XmNx, spot.x, XmNy, spot.y, nullptr);
    return spot;
}

}  // namespace

zSpot zCentreShell(Widget shell) {
    const zSpot room = roomBeside(shell);
    // A window manager may put its title bar at this place.
    return moveTo(shell, {room.x / 2, std::min(room.y / 2, std::max(0, room.y - titleBar))});
}

zSpot zPlaceBeside(Widget shell, const zSpot& other, int away) {
    const zSpot room = roomBeside(shell);
    const auto next = [away](int from, int most) {
        if (from + away <= most) return from + away;
        return from >= away ? 0 : most;  // begin anew, or go as far as possible
    };
    return moveTo(shell, {next(other.x, room.x), next(other.y, std::max(0, room.y - titleBar))});
}

zSpot zPlaceBelow(Widget shell, Widget other) {
    Dimension width = 0, height = 0, ownWidth = 0;
    Position x = 0, y = 0;
    XtVaGetValues(other, XmNwidth, &width, XmNheight, &height, nullptr);
    XtVaGetValues(shell, XmNwidth, &ownWidth, nullptr);
    XtTranslateCoords(other, 0, 0, &x, &y);
    const zSpot room = roomBeside(shell);
    return moveTo(shell, {std::clamp(x + (width - ownWidth) / 2, 0, room.x),
                          std::clamp(y + height, 0, std::max(0, room.y - titleBar))});
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
    zTellTitle(shell);
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
    if (XtIsRealized(shell)) XtUnmapWidget(shell);  // the event that is handled may go on for long
    XtDestroyWidget(shell);
}
