#include "toolkit/controls/fieldmark.h"

#include <X11/Intrinsic.h>
#include <X11/Xutil.h>
#include <Xm/TextF.h>
#include <utility>

namespace {

zFieldMark* left = nullptr;  // what is marked until the next key
XtEventDispatchProc dispatchKey = nullptr;

// Keys are dispatched to the control with the focus, which need not be a field: they are heard before that.
Boolean nextKey(XEvent* event) {
    if (!IsModifierKey(XLookupKeysym(&event->xkey, 0))) {
        if (zFieldMark* mark = std::exchange(left, nullptr)) mark->clear();
        XtSetEventDispatcher(event->xany.display, KeyPress, dispatchKey);
    }
    return dispatchKey(event);
}

}  // namespace

zFieldMark::~zFieldMark() {
    if (left == this) left = nullptr;
}

void zFieldMark::set(std::size_t from, std::size_t to) {
    clear();
    from_ = from;
    to_ = to;
    if (*this)
        XmTextFieldSetHighlight(field_, static_cast<XmTextPosition>(from), static_cast<XmTextPosition>(to),
                                XmHIGHLIGHT_SELECTED);
}

void zFieldMark::leave(std::size_t from, std::size_t to) {
    set(from, to);
    left = this;
    const XtEventDispatchProc standing = XtSetEventDispatcher(XtDisplay(field_), KeyPress, nextKey);
    if (standing != nextKey) dispatchKey = standing;
}

void zFieldMark::clear() {
    if (*this) XmTextFieldSetHighlight(field_, 0, XmTextFieldGetLastPosition(field_), XmHIGHLIGHT_NORMAL);
    from_ = to_ = 0;
}
