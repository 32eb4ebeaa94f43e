#include "toolkit/messagebox.h"

#include "toolkit/fonts.h"
#include "toolkit/kept.h"
#include "toolkit/modal.h"
#include "toolkit/picture.h"
#include "toolkit/place.h"
#include "toolkit/xmtext.h"

#include <Xm/MessageB.h>

namespace {

struct Kind {
    unsigned char dialogType;
    int picture;
    bool asks;
};

bool showBox(zApplication& application, Widget parent, const Kind& kind, const std::string& text,
             const std::string& title) {
    const zXmText message(text), ok("OK"), cancel(kind.asks ? "Cancel" : "OK"), caption(title);
    const Widget shell = zCreateModalShell("message", parent);
    // A single button is the box's cancel button, so that Escape presses it as Return does.
    const unsigned char usual = kind.asks ? XmDIALOG_OK_BUTTON : XmDIALOG_CANCEL_BUTTON;
    const Widget box =
        XtVaCreateWidget("messageBox", xmMessageBoxWidgetClass, shell, XmNdialogType, kind.dialogType,
                         XmNmessageString, message.get(), XmNokLabelString, ok.get(), XmNcancelLabelString,
                         cancel.get(), XmNdefaultButtonType, usual, XmNdialogTitle, caption.get(),
                         XmNdialogStyle, XmDIALOG_FULL_APPLICATION_MODAL, XmNautoUnmanage, False, XmNnoResize,
                         True, XmNdefaultPosition, False, zFonts(shell, zFontRow{}), nullptr);
    Pixel background = 0;
    XtVaGetValues(box, XmNbackground, &background, nullptr);
    if (const Pixmap symbol = zPixmapOf(box, kind.picture, background))
        XtVaSetValues(box, XmNsymbolPixmap, symbol, nullptr);
    if (!kind.asks) XtUnmanageChild(XtNameToWidget(box, "OK"));
    XtUnmanageChild(XtNameToWidget(box, "Help"));

    struct Result {
        bool done = false, agreed = false;
    } result;
    const auto agree = [](Widget, XtPointer place, XtPointer) {
        *static_cast<Result*>(place) = {true, true};
    };
    const auto dismiss = [](Widget, XtPointer place, XtPointer) { static_cast<Result*>(place)->done = true; };
    XtAddCallback(box, XmNokCallback, agree, &result);
    XtAddCallback(box, XmNcancelCallback, dismiss, &result);
    zHearClose(shell, dismiss, &result);

    zRunModal(application, shell, box, result.done);
    XtRemoveCallback(box, XmNokCallback, agree, &result);
    XtRemoveCallback(box, XmNcancelCallback, dismiss, &result);
    zDestroyShell(shell);
    return result.agreed;
}

}  // namespace

void zMessageBox(zApplication& application, Widget parent, zMessageStyle style, const std::string& text,
                 const std::string& title) {
    const bool warning = style == zMessageStyle::warning;
    showBox(application, parent,
            {static_cast<unsigned char>(warning ? XmDIALOG_WARNING : XmDIALOG_INFORMATION),
             warning ? zWarningPicture : zInformationPicture, false},
            text, title);
}

bool zQuestionBox(zApplication& application, Widget parent, const std::string& text,
                  const std::string& title) {
    return showBox(application, parent, {XmDIALOG_QUESTION, zQuestionPicture, true}, text, title);
}
