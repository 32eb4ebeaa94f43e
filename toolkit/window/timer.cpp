#include "toolkit/window/timer.h"

#include <algorithm>

zTimer::zTimer(zApplication& application, int period, std::function<void()> tick)
    : period_(std::max(1, period)), tick_(std::move(tick)),
      alarm_(static_cast<_XDisplay*>(application.display()), [this, &application] {
          application.whenQuiet([this, alive = std::weak_ptr(alive_)] {
              if (!alive.expired()) run();
          });
      }) {
    alarm_.set(period_);
}

void zTimer::run() {
    const std::weak_ptr<bool> alive = alive_;
    const auto tick = tick_;
    tick();
    if (!alive.expired()) alarm_.set(period_);
}
