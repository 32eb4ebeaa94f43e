#include "toolkit/window/timer.h"

#include <X11/Intrinsic.h>
#include <algorithm>

zTimer::zTimer(zApplication& application, int period, std::function<void()> tick)
    : application_(application), period_(static_cast<unsigned long>(std::max(1, period))),
      tick_(std::move(tick)) {
    start();
}

zTimer::~zTimer() {
    if (id_) XtRemoveTimeOut(id_);
}

void zTimer::start() {
    const auto expired = [](XtPointer self, XtIntervalId*) {
        auto* timer = static_cast<zTimer*>(self);
        timer->id_ = 0;
        const std::weak_ptr<bool> alive = timer->alive_;
        const auto tick = timer->tick_;
        timer->application_.ticked();
        tick();
        if (!alive.expired()) timer->start();
    };
    auto* display = static_cast<Display*>(application_.display());
    id_ = XtAppAddTimeOut(XtDisplayToApplicationContext(display), period_, expired, this);
}
