// Periodic timers of the event loop.
#pragma once

#include "toolkit/window/application.h"

#include <functional>
#include <memory>

class zTimer {
  public:
    // Calls `tick` every `period` milliseconds, the first time after one period. Each period begins when the
    // previous tick has returned. Pending X events and signals are handled before a tick. A tick may destroy
    // its timer.
    zTimer(zApplication& application, int period, std::function<void()> tick);
    ~zTimer();
    zTimer(const zTimer&) = delete;
    zTimer& operator=(const zTimer&) = delete;

  private:
    void start();

    zApplication& application_;
    unsigned long period_;
    std::function<void()> tick_;
    unsigned long id_ = 0;
    std::shared_ptr<bool> alive_ = std::make_shared<bool>();
};
