// A page that shows live values: it is refreshed by a timer while it is on top.
#pragma once

#include "toolkit/window/timer.h"

#include <functional>
#include <memory>

class TimerPage {
  public:
    explicit TimerPage(zApplication& application) : application_(application) {}
    virtual ~TimerPage();
    TimerPage(const TimerPage&) = delete;
    TimerPage& operator=(const TimerPage&) = delete;

    // Starts refreshing; nothing when it has started. The page itself says what: see refreshWith.
    virtual void enableTimer() {}
    int disableTimer();  // 0

    virtual void ClearStats() {}

  protected:
    // Calls `update` every timerTime milliseconds, as that is now, until disableTimer.
    void refreshWith(std::function<void()> update);

    zApplication& application() const { return application_; }

  private:
    zApplication& application_;
    std::unique_ptr<zTimer> timer_;
};
