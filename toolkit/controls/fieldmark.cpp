#include "toolkit/controls/fieldmark.h"

#include "toolkit/display/presses.h"

#include <X11/Xutil.h>
#include <Xm/TextF.h>
#include <utility>

namespace {

zFieldMark* left = nullptr;  // what is marked until the next key

}  // namespace

// Keys are for the control with the focus, which need not be a field.
void zFieldMark::hearKeys(Display* display) {
    static const zPresses keys(display, [](XEvent& event) {
        if (event.type != KeyPress || IsModifierKey(XLookupKeysym(&event.xkey, 0))) return;
        if (zFieldMark* mark = std::exchange(left, nullptr)) mark->clear();
    });
}

zFieldMark::~zFieldMark() {
    if (left == this) left = nullptr;
}

void zFieldMark::set(std::size_t from, std::size_t to) {
    clear();
    if (left == this) left = nullptr;
    from_ = from;
    to_ = to;
    if (*this)
        XmTextFieldSetHighlight(field_, static_cast<XmTextPosition>(from), static_cast<XmTextPosition>(to),
                                XmHIGHLIGHT_SELECTED);
}

void zFieldMark::leave(std::size_t from, std::size_t to) {
    set(from, to);
    left = this;
    hearKeys(XtDisplay(field_));
}

void zFieldMark::clear() {
    if (*this) XmTextFieldSetHighlight(field_, 0, XmTextFieldGetLastPosition(field_), XmHIGHLIGHT_NORMAL);
    from_ = to_ = 0;
}
