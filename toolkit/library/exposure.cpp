#include "toolkit/library/exposure.h"

#include <X11/StringDefs.h>

namespace {

struct Painting {
    unsigned long cleared = 0;  // serial number of the request that asked for the last whole painting

    static void exposed(Widget widget, XtPointer self, XEvent* event, Boolean*) {
        auto& painting = *static_cast<Painting*>(self);
        const XExposeEvent& part = event->xexpose;
        if (event->type != Expose || part.count > 0 || part.serial <= painting.cleared) return;
        // Exposures up to this request's own are painted by what it brings about.
        painting.cleared = NextRequest(part.display);
        XClearArea(part.display, XtWindow(widget), 0, 0, 0, 0, True);
    }
    static void destroyed(Widget, XtPointer self, XtPointer) { delete static_cast<Painting*>(self); }
};

}  // namespace

void zRepaintWhole(Widget widget) {
    auto* painting = new Painting;
    XtAddEventHandler(widget, ExposureMask, False, Painting::exposed, painting);
    XtAddCallback(widget, XtNdestroyCallback, Painting::destroyed, painting);
}
