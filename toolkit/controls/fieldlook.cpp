#include "toolkit/controls/fieldlook.h"

#include "toolkit/controls/rowwidget.h"
#include "toolkit/display/fonts.h"

#include <Xm/TextF.h>
#include <algorithm>

namespace {

// Between the inner edge and the text. Where the font is smaller than the usual one, so is this: as many
// letters have room then.
constexpr int textMargin = 4;
int marginBeside(int textHeight) {
    return std::min(textMargin, textMargin * textHeight / zUsualTextHeight);
}

}  // namespace

zFieldLook::zFieldLook(Widget field) : field_(field), usual_(zBackground(field)) {
    const int margin = marginBeside(zTextHeight(field));
    XtVaSetValues(field, XmNmarginWidth, margin, XmNcursorPositionVisible, False, nullptr);
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
