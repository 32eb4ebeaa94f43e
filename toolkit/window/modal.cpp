#include "toolkit/window/modal.h"

#include "toolkit/window/shell.h"

#include <Xm/DialogS.h>
#include <Xm/Xm.h>
#include <algorithm>

namespace {

// A modal dialog that is running.
struct Running {
    Widget shell;
    Running* below;
    bool gone = false;  // another client has destroyed its window
};
Running* topmost = nullptr;

// As a window manager does.
void askToClose(Widget shell) {
    Display* display = XtDisplay(shell);
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.display = display;
    event.xclient.window = XtWindow(shell);
    event.xclient.message_type = XInternAtom(display, "WM_PROTOCOLS", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] = static_cast<long>(XInternAtom(display, "WM_DELETE_WINDOW", False));
    XtDispatchEvent(&event);
}

// Nobody could end the dialog any more. One that lies below another is closed after that.
void noteDestroyed(Widget shell, XtPointer data, XEvent* event, Boolean*) {
    if (event->type != DestroyNotify || event->xdestroywindow.window != XtWindow(shell)) return;
    auto* dialog = static_cast<Running*>(data);
    dialog->gone = true;
    if (dialog == topmost) askToClose(shell);
}

void passHelp(Widget, XtPointer parent, XtPointer call) {
    WidgetList children = nullptr;
    Cardinal count = 0;
    XtVaGetValues(static_cast<Widget>(parent), XmNchildren, &children, XmNnumChildren, &count, nullptr);
    const auto end = children + count;
    const auto board = std::find_if(children, end, [](Widget child) {
        return XtHasCallbacks(child, XmNhelpCallback) == XtCallbackHasSome;
    });
    if (board != end) XtCallCallbacks(*board, XmNhelpCallback, call);
}

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
    Running running{shell, topmost};
    topmost = &running;
    XtAddEventHandler(shell, StructureNotifyMask, False, noteDestroyed, &running);
    application.runUntil(done);
    XtRemoveEventHandler(shell, StructureNotifyMask, False, noteDestroyed, &running);
    topmost = running.below;
    XtRemoveGrab(shell);
    if (topmost && topmost->gone) askToClose(topmost->shell);
}

void zHideModal(Widget shell, Widget board) {
    XtUnmanageChild(board);
    XtUnmapWidget(shell);
}

bool zBlockedByModal(Widget shell) {
    if (!topmost) return false;
    for (Widget above = shell; above; above = XtParent(above))
        if (above == topmost->shell) return false;
    XRaiseWindow(XtDisplay(topmost->shell), XtWindow(topmost->shell));
    return true;
}

void zPassHelp(Widget board, Widget parent) {
    XtAddCallback(board, XmNhelpCallback, passHelp, parent);
}
