#include "toolkit/controls/tooltip.h"

#include "toolkit/display/displaycache.h"
#include "toolkit/display/xmtext.h"
#include "toolkit/library/motion.h"
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

// A delay long enough not to disturb; a duration long enough to read a line twice.
constexpr int defaultDelay = 600, defaultDuration = 8000;

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

}  // namespace

struct zTooltips::Handlers {
    static void board(Widget, XtPointer self, XEvent* event, Boolean*) {
        auto* tips = static_cast<zTooltips*>(self);
        if (event->type == MotionNotify)
            tips->pointerAt(event->xmotion.x, event->xmotion.y);
        else if (event->xcrossing.detail != NotifyInferior)
            tips->pointerLeft();
    }
    static void press(Widget, XtPointer self, XEvent*, Boolean*) { static_cast<zTooltips*>(self)->hide(); }
};

zTooltips::zTooltips(Widget board)
    : board_(board), alarm_(XtDisplay(board), [this] { shell_ ? hide() : show(); }) {
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
        XtRemoveEventHandler(tip.control, ButtonPressMask, False, Handlers::press, this);
}

void zTooltips::add(Widget control, std::string text) {
    XtAddEventHandler(control, ButtonPressMask, False, Handlers::press, this);
    if (XtIsRealized(control)) zPropagateMotion(control);
    tips_.push_back({control, std::move(text), {}});
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

void zTooltips::realized() {
    for (const Tip& tip : tips_) zPropagateMotion(tip.control);
}

void zTooltips::pointerAt(int x, int y) {
    const auto found = std::find_if(tips_.begin(), tips_.end(), [&](const Tip& tip) {
        Position left = 0, top = 0;
        Dimension width = 0, height = 0;
        XtVaGetValues(tip.control, XmNx, &left, XmNy, &top, XmNwidth, &width, XmNheight, &height, nullptr);
        return x >= left && x < left + width && y >= top && y < top + height;
    });
    const Tip* now = found == tips_.end() ? nullptr : &*found;
    if (now == under_) return;
    hide();
    under_ = now;
    if (now) alarm_.set(delay_);
}

void zTooltips::pointerLeft() {
    hide();
    under_ = nullptr;
}

void zTooltips::hide() {
    alarm_.stop();
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
    const int right = WidthOfScreen(XtScreen(board_)), bottom = HeightOfScreen(XtScreen(board_));
    const int left = std::max(0, std::min(rootX, right - width - 2));
    // Above the pointer where there is no room below it.
    const int under = rootY + belowPointer;
    XtVaSetValues(shell_, XmNx, left, XmNy,
                  under + height + 2 > bottom ? rootY - height - belowPointer / 2 : under, nullptr);
    XtPopup(shell_, XtGrabNone);
    alarm_.set(duration_);
}
