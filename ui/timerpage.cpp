#include "ui/timerpage.h"

#include "model/settings.h"

TimerPage::~TimerPage() {
    disableTimer();
}

int TimerPage::disableTimer() {
    timer_.reset();
    return 0;
}

void TimerPage::refreshWith(std::function<void()> update) {
    if (!timer_) timer_ = std::make_unique<zTimer>(application_, timerTime, std::move(update));
}
