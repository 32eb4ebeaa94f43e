#include "toolkit/window/inputwaits.h"

#include <X11/Xlib.h>

namespace {

struct Search {
    Atom closing;
    bool orExposed;
    bool found = false;
};

// Never takes an event from the queue.
Bool look(Display*, XEvent* event, XPointer data) {
    auto& search = *reinterpret_cast<Search*>(data);
    const bool closes = event->type == ClientMessage && event->xclient.format == 32 &&
                        static_cast<Atom>(event->xclient.data.l[0]) == search.closing;
    search.found |= closes || event->type == KeyPress || event->type == ButtonPress ||
                    (search.orExposed && event->type == Expose);
    return False;
}

bool waits(const zApplication& application, bool orExposed) {
    auto* display = static_cast<Display*>(application.display());
    Search search{XInternAtom(display, "WM_DELETE_WINDOW", False), orExposed};
    XEvent unused;
    XCheckIfEvent(display, &unused, look, reinterpret_cast<XPointer>(&search));
    return search.found;
}

}  // namespace

bool zInputWaits(const zApplication& application) {
    return waits(application, false);
}

bool zUserWaits(const zApplication& application) {
    return waits(application, true);
}

zInputEndsWaits::zInputEndsWaits(const zApplication& application)
    : InputEndsWaits(ConnectionNumber(static_cast<Display*>(application.display())),
                     [&application] { return zUserWaits(application); }) {}
