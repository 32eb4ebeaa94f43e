#include "ui/timerpage.h"

#include "model/settings.h"

TimerPage::~TimerPage() {
    disableTimer();
}

int TimerPage::disableTimer() {
    soon_.reset();
    timer_.reset();
    return 0;
}

void TimerPage::refreshWith(std::function<void()> update, bool soon) {
    if (timer_ || soon_) return;
    if (!soon) {
        timer_ = std::make_unique<zTimer>(application_, timerTime, std::move(update));
        return;
    }
    soon_ = std::make_unique<zAfterPainting>(application_, [this, update = std::move(update)] {
        soon_.reset();
        update();
        refreshWith(update, false);
    });
}
