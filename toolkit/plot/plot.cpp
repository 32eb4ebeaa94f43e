#include "toolkit/plot/plot.h"

#include "platform/index.h"
#include "toolkit/controls/rowwidget.h"
#include "toolkit/plot/plotpainter.h"
#include "toolkit/plot/xpen.h"

#include <Xm/DrawingA.h>
#include <Xm/Frame.h>
#include <algorithm>
#include <utility>

namespace {

using Number = zPlotColumns::Number;

constexpr int shadow = 2;
// Ticks in a row after which all columns are drawn, however much that is.
constexpr int longestPending = 8;
constexpr int wheelParts = 10;  // of the span, for one step of the wheel
constexpr EventMask handledEvents = KeyPressMask | ButtonPressMask | ButtonMotionMask | FocusChangeMask;

XRectangle rectangle(int x, int y, int width, int height) {
    return {static_cast<short>(x), static_cast<short>(y), static_cast<unsigned short>(std::max(0, width)),
            static_cast<unsigned short>(std::max(0, height))};
}

}  // namespace

struct zPlot::Handlers {
    static void event(Widget, XtPointer self, XEvent* event, Boolean*) {
        auto& plot = *static_cast<zPlot*>(self);
        switch (event->type) {
        case KeyPress:
            key(plot, event->xkey);
            break;
        case ButtonPress:
            button(plot, event->xbutton);
            break;
        case MotionNotify:
            if (event->xmotion.state & Button1Mask) plot.point(event->xmotion.x, event->xmotion.y);
            break;
        case FocusIn:
        case FocusOut:
            // Those about the pointer come while another control has the focus.
            if (event->xfocus.detail == NotifyPointer || event->xfocus.detail == NotifyInferior) break;
            plot.focused_ = event->type == FocusIn;
            plot.soon();
            break;
        }
    }

    static void key(const zPlot& plot, XKeyEvent& press) {
        char text[8];
        KeySym symbol = NoSymbol;
        XLookupString(&press, text, sizeof text, &symbol, nullptr);
        KeySym upper = NoSymbol;  // letters are those of the keys without Shift and Caps Lock
        XConvertCase(symbol, &symbol, &upper);
        const char* const name = XKeysymToString(symbol);
        const auto handler = plot.onKey;
        if (name && handler)
            handler({name, (press.state & ShiftMask) != 0, (press.state & ControlMask) != 0});
    }

    static void button(zPlot& plot, const XButtonEvent& press) {
        const zPlotTime step = plot.picture_.span() / wheelParts;
        if (press.button == Button1) {
            XmProcessTraversal(plot.widget(), XmTRAVERSE_CURRENT);
            plot.point(press.x, press.y);
        } else if (press.button == Button4 || press.button == Button5) {
            plot.change([&](zPlotPicture& p) { p.scroll(press.button == Button4 ? -step : step); });
        }
    }
};

zPlot::zPlot(Widget board, const zRect& place, const zControlRow& row)
    : zControl(row), place_(place), painter_(std::make_unique<zPlotPainter>()),
      painting_(XtDisplay(board), [this] { redraw(); }) {
    zResources resources(place);
    resources.set(XmNshadowType, XmSHADOW_IN).set(XmNshadowThickness, shadow);
    resources.set(XmNmarginWidth, 0).set(XmNmarginHeight, 0);
    const Widget frame = zMakeWidget(xmFrameWidgetClass, board, row, resources);
    attach(XtVaCreateManagedWidget("cells", xmDrawingAreaWidgetClass, frame, XmNmarginWidth, 0,
                                   XmNmarginHeight, 0, XmNresizePolicy, XmRESIZE_NONE, XmNtraversalOn, True,
                                   XmNnavigationType, XmEXCLUSIVE_TAB_GROUP, XmNwidth,
                                   place.width - 2 * shadow, XmNheight, place.height - 2 * shadow, nullptr));
    pen_ = std::make_unique<zXPen>(widget());
    XtAddEventHandler(widget(), handledEvents, False, Handlers::event, this);
    listen(XmNexposeCallback, [](zControl& self, void* data) {
        auto& plot = static_cast<zPlot&>(self);
        const XEvent* event = static_cast<XmDrawingAreaCallbackStruct*>(data)->event;
        if (!plot.realized_ || !event) return;
        const XExposeEvent& e = event->xexpose;
        plot.show(e.x, e.y, e.x + e.width, e.y + e.height);
    });
}

zPlot::~zPlot() {
    XtRemoveEventHandler(widget(), handledEvents, False, Handlers::event, this);
}

Widget zPlot::outermost() const {
    return XtParent(widget());
}

void zPlot::place(const zRect& place) {
    place_ = place;
    zControl::place(place);
    zSetGeometry(widget(), {shadow, shadow, place.width - 2 * shadow, place.height - 2 * shadow});
    if (!realized_) return;
    pen_->resize(place.width - 2 * shadow, place.height - 2 * shadow);
    redraw();
}

void zPlot::realized() {
    realized_ = true;
    place(place_);
}

void zPlot::point(int x, int y) {
    const auto& p = picture_.places();
    if (const auto index = picture_.legendAt(y)) {
        change([&](zPlotPicture& picture) { picture.select(*index); });
    } else if (!picture_.shown().empty() && y < p.timeBottom) {
        change([&](zPlotPicture& picture) { picture.setCursor(picture.columnAt(x)); });
    }
}

void zPlot::change(const std::function<void(zPlotPicture&)>& how) {
    how(picture_);
    soon();
}

void zPlot::soon() {
    if (realized_ && !painting_.isSet()) painting_.set({});
}

void zPlot::redraw() {
    if (!realized_) return;
    painting_.stop();
    picture_.lay(place_.width - 2 * shadow, place_.height - 2 * shadow, *pen_);
    painter_->all(picture_, *pen_);
    written_.clear();
    for (std::size_t i = 0; i < picture_.cells(); ++i) written_.push_back(picture_.cellText(i));
    pendingFrom_ = noColumn;
    timesFrom_ = picture_.columnAt(picture_.places().right);
    show(0, 0, picture_.places().width, picture_.places().height);
}

void zPlot::tick(zPlotTime now) {
    const zPlotPicture::Change change = picture_.tick(now);
    if (!realized_ || picture_.shown().empty()) return;
    pen_->takeSent();
    if (change.all || painting_.isSet()) {
        redraw();
        bytesOfLastTick_ = pen_->takeSent();
        return;
    }
    const auto& p = picture_.places();
    const Number end = picture_.columnAt(p.right), come = end - 1 - change.lastBefore;
    if (change.from < end) pendingFrom_ = std::min(pendingFrom_, change.from);
    if (pendingFrom_ != noColumn) pendingFrom_ = std::max(pendingFrom_, picture_.columnAt(p.left));
    // A value that waits is preferred to a column that is going to change again.
    const bool draw = come > 0 || pendingFrom_ < end - 1 || (pendingFrom_ < end && !waits_);
    const Number from = draw ? drawColumns(end, come) : end;
    const bool timed = writeTimes(), wrote = writeCells();
    if (draw || timed || wrote)
        show(come > 0 || timed ? p.left
             : wrote           ? p.nameLeft
                               : picture_.xOf(from),
             draw    ? p.top
             : timed ? p.bottom
                     : p.timeBottom,
             std::max(wrote ? p.cursorRight : 0, draw || timed ? p.right : 0),
             wrote ? picture_.legendTop(picture_.shown().size()) : p.timeBottom);
    bytesOfLastTick_ = pen_->takeSent();
}

// Of the columns that are pending as many as there is room for, and the ground of those that have come.
// Returns the first.
zPlotColumns::Number zPlot::drawColumns(Number end, Number come) {
    const auto& p = picture_.places();
    if (come > 0)
        pen_->scroll(rectangle(p.left, p.top, p.right - p.left, p.timeBottom - p.top),
                     static_cast<int>(come));
    const Number from = std::min(pendingFrom_, end - come);
    std::size_t others = pen_->sent() + zXBytes::copy;
    if (picture_.cursor()) others += zXBytes::fill + zXBytes::area;
    Number to = end;
    painter_->prepare(picture_, from, to, end - come);
    while (painter_->bytes() + others > tickBytes && to > from + (come > 0 ? 0 : 1) &&
           ticksPending_ < longestPending) {
        to = from + (to - from) / 2;
        painter_->prepare(picture_, from, to, end - come);
    }
    painter_->draw(*pen_);
    pendingFrom_ = to < end ? to : noColumn;
    ticksPending_ = to < end - 1 ? ticksPending_ + 1 : 0;  // the newest column changes again anyway
    return from;
}

bool zPlot::writeTimes() {
    painter_->prepareTimes(picture_, std::max(timesFrom_, picture_.columnAt(picture_.places().left)));
    const std::size_t bytes = painter_->bytesOfTimes();
    if (bytes > 0 && pen_->sent() + bytes + zXBytes::copy + zXBytes::fill + zXBytes::area > tickBytes)
        return false;
    painter_->drawTimes(*pen_);
    timesFrom_ = picture_.columnAt(picture_.places().right);
    return bytes > 0;
}

// Cells whose text is no longer the one that is written, as many as there is room for.
bool zPlot::writeCells() {
    const auto& p = picture_.places();
    std::array<XRectangle, 2 * zPlotLook::lines + 1> areas{};
    std::array<zPlotPen::Text, 2 * zPlotLook::lines + 1> texts{};
    std::size_t count = 0;
    std::size_t bytes = pen_->sent() + zXBytes::fill + zXBytes::writing + zXBytes::copy +
                        (picture_.cursor() ? zXBytes::fill + zXBytes::area : 0);
    waits_ = false;
    for (std::size_t i = 0, first = turn_; i < written_.size(); ++i) {
        const std::size_t cell = (first + i) % written_.size();
        std::string now = picture_.cellText(cell);
        std::string& before = written_[cell];
        if (now == before) continue;
        const int width = pen_->textWidth(now), widthBefore = pen_->textWidth(before);
        // Of a text as long as before only what follows the characters that stay.
        std::size_t from = 0;
        if (now.size() == before.size() && width == widthBefore)
            from = static_cast<std::size_t>(std::ranges::mismatch(now, before).in1 - now.begin());
        bytes += zXBytes::area + zXBytes::text(now.size() - from);
        if (bytes > tickBytes) {
            waits_ = true;
            turn_ = cell;
            break;
        }
        before = std::move(now);
        const std::string_view changed = std::string_view(before).substr(from);
        const auto [right, top] = picture_.cellPlace(cell);
        const int x = right - pen_->textWidth(changed);
        const int left = from > 0 ? x : right - std::max(width, widthBefore);
        areas[count] = rectangle(left, top, right - left, p.row);
        texts[count++] = {x, top + p.ascent + 1, changed};
    }
    if (count == 0) return false;
    pen_->ground(std::span(areas).first(count));
    pen_->write(std::span(texts).first(count));
    return true;
}

void zPlot::show(int left, int top, int right, int bottom) {
    pen_->show(rectangle(left, top, right - left, bottom - top));
    if (picture_.cursor()) pen_->markWindow(zPlotPainter::cursorLine(picture_));
    const auto& p = picture_.places();
    if (focused_ && (left == 0 || right == p.width || bottom == p.height)) showRing();
}

void zPlot::showRing() {
    const auto& p = picture_.places();
    for (const XRectangle& side : {rectangle(0, 0, p.width, 1), rectangle(0, p.height - 1, p.width, 1),
                                   rectangle(0, 0, 1, p.height), rectangle(p.width - 1, 0, 1, p.height)})
        pen_->markWindow(side);
}

unsigned long zPlot::pixmap() const {
    return pen_->pixmap();
}
