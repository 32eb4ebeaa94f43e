#include "toolkit/messagebox.h"

#include "toolkit/fonts.h"
#include "toolkit/picture.h"
#include "toolkit/place.h"
#include "toolkit/xmtext.h"

#include <Xm/DialogS.h>
#include <Xm/MessageB.h>
#include <Xm/Protocols.h>

void zMessageBox(zApplication& application, Widget parent, zMessageStyle style, const std::string& text,
                 const std::string& title) {
    const zXmText message(text), ok("OK"), caption(title);
    const Widget shell =
        XtVaCreatePopupShell("message", xmDialogShellWidgetClass, parent, XmNmappedWhenManaged, False,
                             XmNdeleteResponse, XmDO_NOTHING, XmNallowShellResize, True, nullptr);
    const bool warning = style == zMessageStyle::warning;
    const unsigned char kind = warning ? XmDIALOG_WARNING : XmDIALOG_INFORMATION;
    const Widget box = XtVaCreateWidget(
        "messageBox", xmMessageBoxWidgetClass, shell, XmNdialogType, kind, XmNmessageString, message.get(),
        XmNcancelLabelString, ok.get(), XmNdefaultButtonType, XmDIALOG_CANCEL_BUTTON, XmNdialogTitle,
        caption.get(), XmNdialogStyle, XmDIALOG_FULL_APPLICATION_MODAL, XmNautoUnmanage, False, XmNnoResize,
        True, XmNdefaultPosition, False, zTypedFonts(zRenderTableName({})), nullptr);
    Pixel background = 0;
    XtVaGetValues(box, XmNbackground, &background, nullptr);
    const zPixmap symbol(box, warning ? zWarningPicture : zInformationPicture, background);
    if (symbol) XtVaSetValues(box, XmNsymbolPixmap, symbol.handle(), nullptr);

    // The one button is the box's cancel button, so that Escape presses it as Return does.
    XtUnmanageChild(XtNameToWidget(box, "OK"));
    XtUnmanageChild(XtNameToWidget(box, "Help"));

    bool done = false;
    const auto dismiss = [](Widget, XtPointer flag, XtPointer) { *static_cast<bool*>(flag) = true; };
    XtAddCallback(box, XmNcancelCallback, dismiss, &done);
    XmAddWMProtocolCallback(shell, XInternAtom(XtDisplay(shell), "WM_DELETE_WINDOW", False), dismiss, &done);

    XtManageChild(box);
    zCentre(shell);
    XtMapWidget(shell);
    XtAddGrab(shell, True, False);  // the library's own grab does not hold back clicks into other windows
    application.runUntil(done);
    XtRemoveGrab(shell);

    XtRemoveCallback(box, XmNcancelCallback, dismiss, &done);
    // Inside a handler the destruction waits for the handler's end; the box must not be seen so long.
    XtUnmanageChild(box);
    XtUnmapWidget(shell);
    zDestroyShell(shell);
}
