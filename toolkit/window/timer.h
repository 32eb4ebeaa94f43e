// Periodic timers of the event loop.
#pragma once

#include "toolkit/display/alarm.h"
#include "toolkit/window/application.h"

#include <functional>
#include <memory>

class zTimer {
  public:
    // Calls `tick` every `period` milliseconds of the monotonic clock, the first time after one period. Each
    // period begins when the previous tick has returned. Pending X events and signals are handled before a
    // tick. A tick may destroy its timer. The display must be open.
    zTimer(zApplication& application, int period, std::function<void()> tick);
    zTimer(const zTimer&) = delete;
    zTimer& operator=(const zTimer&) = delete;

  private:
    void run();

    std::chrono::milliseconds period_;
    std::function<void()> tick_;
    zAlarm alarm_;
    std::shared_ptr<bool> alive_ = std::make_shared<bool>();
};
