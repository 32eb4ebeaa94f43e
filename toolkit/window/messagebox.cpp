#include "toolkit/window/messagebox.h"

#include "toolkit/controls/dialogunits.h"
#include "toolkit/controls/rowwidget.h"
#include "toolkit/display/displaycache.h"
#include "toolkit/display/picture.h"
#include "toolkit/display/xmtext.h"
#include "toolkit/window/fittedtext.h"
#include "toolkit/window/modal.h"
#include "toolkit/window/shell.h"
#include "toolkit/window/title.h"

#include <Xm/MessageB.h>

namespace {

struct Kind {
    unsigned char dialogType;
    int picture;
    bool asks;
};

bool showBox(zApplication& application, Widget parent, const Kind& kind, const std::string& text,
             const std::string& title) {
    const Widget shell = zCreateModalShell("message", parent);
    zSetTitle(shell, title);
    const zFittedText fitted = zFitText(shell, text);
    const zXmText message(fitted.text), ok("OK"), cancel(kind.asks ? "Cancel" : "OK");
    // A single button is the box's cancel button: then both Return and Escape press it.
    const unsigned char usual = kind.asks ? XmDIALOG_OK_BUTTON : XmDIALOG_CANCEL_BUTTON;
    zResources resources;
    resources.set(XmNdialogType, kind.dialogType).set(XmNmessageString, message);
    resources.set(XmNokLabelString, ok).set(XmNcancelLabelString, cancel).set(XmNdefaultButtonType, usual);
    resources.set(XmNdialogStyle, XmDIALOG_FULL_APPLICATION_MODAL);
    resources.set(XmNautoUnmanage, False).set(XmNnoResize, True).set(XmNdefaultPosition, False);
    resources.setFonts(zDisplayCache::of(XtDisplay(shell)).renderTable(shell, fitted.font));
    const Widget box = XtCreateWidget("messageBox", xmMessageBoxWidgetClass, shell, resources.args.data(),
                                      resources.count());
    if (const Pixmap symbol =
            zPixmapOf(box, kind.picture, zBackground(box), zDialogUnits::ofBoard(box).baseHeight()))
        XtVaSetValues(box, XmNsymbolPixmap, symbol, nullptr);
    if (!kind.asks) XtUnmanageChild(XtNameToWidget(box, "OK"));
    XtUnmanageChild(XtNameToWidget(box, "Help"));
    // The library has the buttons in one group, within which only the arrows move.
    static const XtTranslations keys = XtParseTranslationTable(
        "Shift<Key>Tab: ManagerGadgetTraversePrev()\n<Key>Tab: ManagerGadgetTraverseNext()");
    XtOverrideTranslations(box, keys);

    struct Result {
        bool done = false, agreed = false;
    } result;
    const auto agree = [](Widget, XtPointer place, XtPointer) {
        *static_cast<Result*>(place) = {true, true};
    };
    const auto dismiss = [](Widget, XtPointer place, XtPointer) { static_cast<Result*>(place)->done = true; };
    XtAddCallback(box, XmNokCallback, agree, &result);
    XtAddCallback(box, XmNcancelCallback, dismiss, &result);
    zPassHelp(box, parent);
    zOnCloseRequest(shell, dismiss, &result);

    zRunModal(application, shell, box, result.done);
    zHideModal(shell, box);
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
