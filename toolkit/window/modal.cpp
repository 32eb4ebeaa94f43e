#include "toolkit/window/modal.h"

#include "toolkit/window/shell.h"

#include <Xm/DialogS.h>
#include <Xm/Xm.h>
#include <utility>

namespace {

Widget topmost = nullptr;  // the innermost modal dialog that is running

}  // namespace

Widget zCreateModalShell(const char* name, Widget parent) {
    return XtVaCreatePopupShell(name, xmDialogShellWidgetClass, parent, XmNmappedWhenManaged, False,
                                XmNdeleteResponse, XmDO_NOTHING, XmNallowShellResize, True, nullptr);
}

void zRunModal(zApplication& application, Widget shell, Widget board, const bool& done) {
    XtManageChild(board);
    zCentreShell(shell);
    zMapShell(shell);
    XtAddGrab(shell, True, False);  // Motif's own grab lets clicks through to other windows
    const Widget below = std::exchange(topmost, shell);
    application.runUntil(done);
    topmost = below;
    XtRemoveGrab(shell);
}

void zHideModal(Widget shell, Widget board) {
    XtUnmanageChild(board);
    XtUnmapWidget(shell);
}

bool zBlockedByModal(Widget shell) {
    if (!topmost) return false;
    for (Widget above = shell; above; above = XtParent(above))
        if (above == topmost) return false;
    XRaiseWindow(XtDisplay(topmost), XtWindow(topmost));
    return true;
}
