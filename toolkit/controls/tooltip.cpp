#include "toolkit/controls/tooltip.h"

#include "toolkit/controls/rowwidget.h"
#include "toolkit/display/displaycache.h"
#include "toolkit/display/xmtext.h"
#include "toolkit/library/xftdraws.h"

#include <X11/Shell.h>
#include <Xm/Label.h>
#include <algorithm>
#include <iterator>
#include <utility>

namespace {

struct Delays {
    int post, duration;
};

// A delay long enough not to disturb; a duration long enough to read a line.
constexpr int defaultDelay = 600, defaultDuration = 5000;

Delays delaysOf(Widget widget) {
    static char delayName[] = "toolTipPostDelay", delayClass[] = "ToolTipPostDelay";
    static char durationName[] = "toolTipPostDuration", durationClass[] = "ToolTipPostDuration";
    static XtResource resources[] = {
        {delayName, delayClass, XtRInt, sizeof(int), offsetof(Delays, post), XtRImmediate,
         reinterpret_cast<XtPointer>(XtArgVal{defaultDelay})},
        {durationName, durationClass, XtRInt, sizeof(int), offsetof(Delays, duration), XtRImmediate,
         reinterpret_cast<XtPointer>(XtArgVal{defaultDuration})},
    };
    Delays delays{};
    XtGetApplicationResources(widget, &delays, resources, XtNumber(resources), nullptr, 0);
    return delays;
}

constexpr int belowPointer = 20;  // clears the pointer's shape
constexpr int gap = 2;            // to the control that a text stands off

zTooltips* active = nullptr;  // the one whose text is shown or due

}  // namespace

struct zTooltips::Handlers {
    static void board(Widget, XtPointer self, XEvent* event, Boolean*) {
        auto* tips = static_cast<zTooltips*>(self);
        if (event->type == MotionNotify)
            tips->pointerAt(event->xmotion.x, event->xmotion.y);
        else if (event->xcrossing.detail != NotifyInferior)
            tips->pointerLeft();
    }
    // The board hears of motion over the controls that have tooltips, and not of what is beside them.
    static void left(Widget control, XtPointer self, XEvent* event, Boolean*) {
        auto* tips = static_cast<zTooltips*>(self);
        const XCrossingEvent& crossing = event->xcrossing;
        if (crossing.mode == NotifyNormal && crossing.detail != NotifyInferior && tips->under_ &&
            tips->under_->control == control)
            tips->pointerLeft();
    }
};

zTooltips::zTooltips(Widget board)
    : board_(board), alarm_(XtDisplay(board), [this] { shell_ ? hide() : show(); }),
      presses_(XtDisplay(board), [this](XEvent&) {
          if (active == this) hide();
      }) {
    Widget top = board;
    while (XtParent(top)) top = XtParent(top);
    const Delays delays = delaysOf(top);
    delay_ = std::chrono::milliseconds(delays.post);
    duration_ = std::chrono::milliseconds(delays.duration);
    XtAddEventHandler(board_, PointerMotionMask | LeaveWindowMask, False, Handlers::board, this);
}

zTooltips::~zTooltips() {
    hide();
    XtRemoveEventHandler(board_, PointerMotionMask | LeaveWindowMask, False, Handlers::board, this);
    for (const Tip& tip : tips_)
        XtRemoveEventHandler(tip.control, LeaveWindowMask, False, Handlers::left, this);
}

void zTooltips::add(Widget control, std::string text, Place place) {
    XtAddEventHandler(control, LeaveWindowMask, False, Handlers::left, this);
    tips_.push_back({control, std::move(text), {}, place});
}

void zTooltips::setDetail(Widget control, std::string detail) {
    auto tip = std::ranges::find(tips_, control, &Tip::control);
    if (tip == tips_.end()) {
        add(control, {});
        tip = std::prev(tips_.end());
    }
    tip->detail = std::move(detail);
    if (shell_ && under_ == &*tip)
        XtVaSetValues(label_, XmNlabelString, zXmText(tip->whole()).get(), nullptr);
}

std::string zTooltips::Tip::whole() const {
    return text + (text.empty() || detail.empty() ? "" : ": ") + detail;
}

void zTooltips::pointerAt(int x, int y) {
    const auto found =
        std::ranges::find_if(tips_, [&](const Tip& tip) { return zWidgetHas(tip.control, x, y); });
    const Tip* now = found == tips_.end() ? nullptr : &*found;
    if (now == under_) return;
    hide();
    under_ = now;
    if (!now) return;
    active = this;
    alarm_.set(delay_);
}

void zTooltips::pointerLeft() {
    hide();
    under_ = nullptr;
}

void zTooltips::hide() {
    alarm_.stop();
    if (active == this) active = nullptr;
    if (!shell_) return;
    zFreeXftDraws(shell_);
    XtDestroyWidget(std::exchange(shell_, nullptr));
}

void zTooltips::show() {
    Display* display = XtDisplay(board_);
    Window root = 0, child = 0;
    int rootX = 0, rootY = 0, x = 0, y = 0;
    unsigned mask = 0;
    XQueryPointer(display, XtWindow(board_), &root, &child, &rootX, &rootY, &x, &y, &mask);

    Widget top = board_;
    while (!XtIsShell(top)) top = XtParent(top);
    shell_ = XtVaCreatePopupShell("TipShell", overrideShellWidgetClass, top, XmNallowShellResize, True,
                                  XmNborderWidth, 1, nullptr);
    const zXmText text(under_->whole());
    const XmRenderTable font = zDisplayCache::of(display).renderTable(shell_, "plain");
    label_ = XtVaCreateManagedWidget("TipLabel", xmLabelWidgetClass, shell_, XmNlabelString, text.get(),
                                     XmNrenderTable, font, nullptr);
    XtRealizeWidget(shell_);
    Dimension width = 0, height = 0;
    XtVaGetValues(label_, XmNwidth, &width, XmNheight, &height, nullptr);
    put(rootX, rootY, width + 2, height + 2);
    XtPopup(shell_, XtGrabNone);
    alarm_.set(duration_);
}

// The border included. Where there is no room below it comes above.
void zTooltips::put(int rootX, int rootY, int width, int height) const {
    int under = rootY + belowPointer, above = rootY - belowPointer / 2;
    if (under_->place == Place::outside) {
        Position left = 0, top = 0;
        Dimension controlHeight = 0;
        XtTranslateCoords(under_->control, 0, 0, &left, &top);
        XtVaGetValues(under_->control, XmNheight, &controlHeight, nullptr);
        under = top + controlHeight + gap;
        above = top - gap;
    }
    const int right = WidthOfScreen(XtScreen(board_)), bottom = HeightOfScreen(XtScreen(board_));
    XtVaSetValues(shell_, XmNx, std::max(0, std::min(rootX, right - width)), XmNy,
                  under + height > bottom ? above - height : under, nullptr);
}
