// The simulated clock: milliseconds since the driver was loaded. It runs with real time, or stands still and
// is stepped.
#pragma once

#include <chrono>
#include <cstdint>

namespace sim {

using Millis = std::int64_t;

class Clock {
  public:
    Millis now() const { return running_ ? base_ + sinceBase() : base_; }
    bool running() const { return running_; }

    void freeze() {
        base_ = now();
        running_ = false;
    }
    void run() {
        if (!running_) origin_ = Real::now();
        running_ = true;
    }
    void startFrozen() {
        base_ = 0;
        running_ = false;
    }
    void step(Millis by) { base_ += by; }

  private:
    using Real = std::chrono::steady_clock;

    Millis sinceBase() const {
        return std::chrono::duration_cast<std::chrono::milliseconds>(Real::now() - origin_).count();
    }

    Real::time_point origin_ = Real::now();
    Millis base_ = 0;
    bool running_ = true;
};

}  // namespace sim
