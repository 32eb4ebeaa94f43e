#include "toolkit/table/columndrag.h"

#include "platform/index.h"
#include "toolkit/display/displaycache.h"

#include <X11/cursorfont.h>
#include <Xm/VirtKeys.h>
#include <Xm/Xm.h>
#include <algorithm>
#include <map>
#include <utility>

namespace {

constexpr int leastWidth = 16;  // pixels: what is narrower can hardly be dragged back

std::map<std::pair<const zControlRow*, int>, int> chosenWidths;  // by kind of table and column

}  // namespace

struct zColumnDrag::Keys {
    static void event(Widget, XtPointer self, XEvent* event, Boolean* goesOn) {
        auto& drag = *static_cast<zColumnDrag*>(self);
        if (drag.column_ < 0 || event->type != KeyPress || !(event->xkey.state & Button1Mask)) return;
        Modifiers used = 0;
        KeySym symbol = NoSymbol;
        XtTranslateKeycode(event->xkey.display, static_cast<KeyCode>(event->xkey.keycode), event->xkey.state,
                           &used, &symbol);
        *goesOn = False;
        if (symbol == osfXK_Cancel) drag.callOff();
    }
};

zColumnDrag::zColumnDrag(const zControlRow& kind, const zTableGrid& grid, std::function<int(int)> fitted,
                         std::function<void(int, int)> resize)
    : kind_(kind), grid_(grid), fitted_(std::move(fitted)), resize_(std::move(resize)) {}

zColumnDrag::~zColumnDrag() {
    if (canvas_) XtRemoveEventHandler(canvas_, KeyPressMask, False, Keys::event, this);
}

bool zColumnDrag::event(Widget canvas, const XEvent& event) {
    if (event.type == MotionNotify) {
        if (column_ >= 0)
            choose(column_, event.xmotion.x - from_);
        else
            showCursor(canvas, grid_.edgeAt(event.xmotion.x, event.xmotion.y) >= 0);
        return column_ >= 0;
    }
    if (event.xbutton.button != Button1) return false;
    if (event.type == ButtonRelease) return std::exchange(column_, -1) >= 0;
    const int column = grid_.edgeAt(event.xbutton.x, event.xbutton.y);
    if (column >= 0)
        press(canvas, event.xbutton, column);
    else
        last_ = -1;
    return column >= 0;
}

void zColumnDrag::press(Widget canvas, const XButtonEvent& event, int column) {
    const Time pause = event.time - lastPress_;
    lastPress_ = event.time;
    if (std::exchange(last_, column) == column &&
        pause < static_cast<Time>(XtGetMultiClickTime(event.display))) {
        last_ = -1;
        choose(column, fitted_(column));
        return;
    }
    column_ = column;
    width_ = grid_.widths[asIndex(column)];
    from_ = event.x - width_;
    choice_ = chosen(column);
    XmProcessTraversal(canvas, XmTRAVERSE_CURRENT);  // the keys come here, not to another control's window
    if (!canvas_) XtInsertEventHandler(canvas, KeyPressMask, False, Keys::event, this, XtListHead);
    canvas_ = canvas;
}

void zColumnDrag::callOff() {
    const int column = std::exchange(column_, -1);
    last_ = -1;
    if (choice_)
        chosenWidths[{&kind_, column}] = *choice_;
    else
        chosenWidths.erase({&kind_, column});
    resize_(column, width_);
}

void zColumnDrag::choose(int column, int width) {
    width = std::max(leastWidth, width);
    chosenWidths[{&kind_, column}] = width;
    resize_(column, width);
}

std::optional<int> zColumnDrag::chosen(int column) const {
    const auto found = chosenWidths.find({&kind_, column});
    if (found == chosenWidths.end()) return {};
    return found->second;
}

void zColumnDrag::showCursor(Widget canvas, bool onEdge) {
    if (onEdge == cursorShown_) return;
    cursorShown_ = onEdge;
    Display* display = XtDisplay(canvas);
    if (onEdge)
        XDefineCursor(display, XtWindow(canvas), zDisplayCache::of(display).cursor(XC_sb_h_double_arrow));
    else
        XUndefineCursor(display, XtWindow(canvas));
}
