#include "toolkit/controls/fieldlook.h"

#include "toolkit/controls/rowwidget.h"

#include <Xm/TextF.h>

namespace {

constexpr int textMargin = 4;  // between the inner edge and the text

}  // namespace

zFieldLook::zFieldLook(Widget field) : field_(field), usual_(zBackground(field)) {
    XtVaSetValues(field, XmNmarginWidth, textMargin, XmNcursorPositionVisible, False, nullptr);
    if (!XmTextFieldGetEditable(field)) return;
    const auto showCaret = [](Widget focused, XtPointer on, XtPointer) {
        XtVaSetValues(focused, XmNcursorPositionVisible, on != nullptr, nullptr);
    };
    static char with;
    XtAddCallback(field, XmNfocusCallback, showCaret, &with);
    XtAddCallback(field, XmNlosingFocusCallback, showCaret, nullptr);
}

void zFieldLook::grey(bool on) {
    XtVaSetValues(field_, XmNbackground, on ? zBackground(XtParent(field_)) : usual_, nullptr);
}
