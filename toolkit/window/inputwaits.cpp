#include "toolkit/window/inputwaits.h"

#include <X11/Xlib.h>

namespace {

struct Search {
    Atom closing;
    bool found = false;
};

// Never takes an event from the queue.
Bool look(Display*, XEvent* event, XPointer data) {
    auto& search = *reinterpret_cast<Search*>(data);
    const bool closes = event->type == ClientMessage && event->xclient.format == 32 &&
                        static_cast<Atom>(event->xclient.data.l[0]) == search.closing;
    search.found |= closes || event->type == KeyPress || event->type == ButtonPress;
    return False;
}

}  // namespace

bool zInputWaits(const zApplication& application) {
    auto* display = static_cast<Display*>(application.display());
    Search search{XInternAtom(display, "WM_DELETE_WINDOW", False)};
    XEvent unused;
    XCheckIfEvent(display, &unused, look, reinterpret_cast<XPointer>(&search));
    return search.found;
}
