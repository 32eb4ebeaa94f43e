#include "toolkit/display/alarm.h"

#include "toolkit/display/displaycache.h"

#include <X11/Intrinsic.h>
#include <cstdint>
#include <sys/eventfd.h>
#include <sys/timerfd.h>
#include <unistd.h>

zAlarms::zAlarms(Display* display)
    : timer_(::timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC)),
      now_(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {
    const auto readable = [](XtPointer self, int* source, XtInputId*) {
        std::uint64_t count = 0;
        if (::read(*source, &count, sizeof count) == sizeof count) static_cast<zAlarms*>(self)->awake();
    };
    if (!working()) return;
    const XtAppContext context = XtDisplayToApplicationContext(display);
    const auto mask = reinterpret_cast<XtPointer>(XtInputReadMask);
    inputs_[0] = XtAppAddInput(context, timer_, mask, readable, this);
    inputs_[1] = XtAppAddInput(context, now_, mask, readable, this);
}

zAlarms::~zAlarms() {
    for (const unsigned long input : inputs_)
        if (input) XtRemoveInput(input);
    for (const int descriptor : {timer_, now_})
        if (descriptor >= 0) ::close(descriptor);
}

void zAlarms::wakeForFirst() const {
    if (queue_.empty()) return;  // a wake-up that is under way finds nothing to do
    const Clock::time_point first = queue_.begin()->first;
    if (first <= Clock::now()) {
        ::eventfd_write(now_, 1);
        return;
    }
    using namespace std::chrono;
    const auto whole = time_point_cast<seconds>(first);
    const itimerspec when{{}, {whole.time_since_epoch().count(), nanoseconds(first - whole).count()}};
    ::timerfd_settime(timer_, TFD_TIMER_ABSTIME, &when, nullptr);
}

void zAlarms::awake() {
    if (queue_.empty() || queue_.begin()->first > Clock::now()) return wakeForFirst();
    zAlarm& alarm = *queue_.begin()->second;
    alarm.stop();
    wakeForFirst();
    const auto ring = alarm.ring_;  // the alarm may go meanwhile
    ring();
}

zAlarm::zAlarm(Display* display, std::function<void()> ring)
    : alarms_(zDisplayCache::of(display).alarms()), ring_(std::move(ring)), place_(alarms_.queue_.end()) {}

void zAlarm::set(std::chrono::milliseconds delay) {
    stop();
    place_ = alarms_.queue_.emplace(zAlarms::Clock::now() + delay, this);
    if (place_ == alarms_.queue_.begin()) alarms_.wakeForFirst();
}

void zAlarm::stop() {
    if (isSet()) alarms_.queue_.erase(place_);
    place_ = alarms_.queue_.end();
}
