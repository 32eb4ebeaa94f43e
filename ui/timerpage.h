// A page of live values, which a timer refreshes while the page is on top.
#pragma once

#include "toolkit/window/afterpainting.h"
#include "toolkit/window/timer.h"

#include <functional>
#include <memory>

class TimerPage {
  public:
    explicit TimerPage(zApplication& application) : application_(application) {}
    virtual ~TimerPage();
    TimerPage(const TimerPage&) = delete;
    TimerPage& operator=(const TimerPage&) = delete;

    // Starts refreshing unless it is running. Derived pages call refreshWith.
    virtual void enableTimer() {}
    int disableTimer();  // 0

    virtual void ClearStats() {}

  protected:
    // Calls `update` every timerTime milliseconds (its present value) until disableTimer(), for the first
    // time after that time or, with `soon`, when the window has been painted.
    void refreshWith(std::function<void()> update, bool soon);

    zApplication& application() const { return application_; }

  private:
    zApplication& application_;
    std::unique_ptr<zAfterPainting> soon_;
    std::unique_ptr<zTimer> timer_;
};
