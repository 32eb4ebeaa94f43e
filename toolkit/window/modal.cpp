#include "toolkit/window/modal.h"

#include "toolkit/window/shell.h"

#include <Xm/DialogS.h>
#include <Xm/Xm.h>
#include <utility>

namespace {

Widget topmost = nullptr;  // of the modal dialogs that are running

}  // namespace

Widget zCreateModalShell(const char* name, Widget parent) {
    return XtVaCreatePopupShell(name, xmDialogShellWidgetClass, parent, XmNmappedWhenManaged, False,
                                XmNdeleteResponse, XmDO_NOTHING, XmNallowShellResize, True, nullptr);
}

void zRunModal(zApplication& application, Widget shell, Widget board, const bool& done) {
    XtManageChild(board);
    zCentreShell(shell);
    XtMapWidget(shell);
    XtAddGrab(shell, True, False);  // the library's own grab does not hold back clicks into other windows
    const Widget below = std::exchange(topmost, shell);
    application.runUntil(done);
    topmost = below;
    XtRemoveGrab(shell);
    // Inside a handler the destruction waits for the handler's end; the dialog must not be seen so long.
    XtUnmanageChild(board);
    XtUnmapWidget(shell);
}

bool zHeldBack(Widget shell) {
    if (!topmost || topmost == shell) return false;
    XRaiseWindow(XtDisplay(topmost), XtWindow(topmost));
    return true;
}
