// Delays in the event loop, on the monotonic clock. The timers of Xt compare times of the wall clock: when
// somebody sets it back, those that run stand still until it has caught up. Inside the toolkit only.
#pragma once

#include <chrono>
#include <functional>
#include <map>

class zAlarm;
struct _XDisplay;  // Xlib's Display

// The alarms of a display, which one timer descriptor among the inputs of its application context wakes.
class zAlarms {
  public:
    explicit zAlarms(_XDisplay* display);
    ~zAlarms();  // no alarm is set any more
    zAlarms(const zAlarms&) = delete;
    zAlarms& operator=(const zAlarms&) = delete;

    // False when the system had no descriptors left: nothing rings.
    bool working() const { return timer_ >= 0 && now_ >= 0; }

  private:
    friend class zAlarm;
    using Clock = std::chrono::steady_clock;
    using Queue = std::multimap<Clock::time_point, zAlarm*>;

    void wakeForFirst() const;
    void awake();

    int timer_, now_;  // readable when the first alarm is due; `now_` at once, without the timer interrupt
    unsigned long inputs_[2] = {0, 0};
    Queue queue_;
};

// Calls `ring` from the event loop once the delay is over, before X events that wait. `ring` may set the
// alarm again, or destroy it.
class zAlarm {
  public:
    zAlarm(_XDisplay* display, std::function<void()> ring);
    ~zAlarm() { stop(); }
    zAlarm(const zAlarm&) = delete;
    zAlarm& operator=(const zAlarm&) = delete;

    void set(std::chrono::milliseconds delay);  // anew if it is set
    void stop();
    bool isSet() const { return place_ != alarms_.queue_.end(); }

  private:
    friend class zAlarms;

    zAlarms& alarms_;
    std::function<void()> ring_;
    zAlarms::Queue::iterator place_;
};
