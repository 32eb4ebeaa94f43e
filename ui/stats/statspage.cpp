#include "ui/stats/statspage.h"

#include "toolkit/window/inputwaits.h"
#include "ui/stats/statsmenu.h"

#include <algorithm>
#include <utility>

namespace {

// From here on a refresh is noticed by somebody who has pressed a button meanwhile.
constexpr std::chrono::milliseconds noticeable{100};
// Then how often is looked: a table of thousands of quick requests must not look at each.
constexpr std::chrono::milliseconds lookAgain{20};

}  // namespace

StatsPage::StatsPage(const StatsSource& source, const zLayout& layout)
    : TimerPage(source.application), board_(source.notebook.addPage(layout)), channel_(source.channel),
      answers_(source.channel), reopenings_(source.channel.reopenings()) {}

void StatsPage::counts(std::initializer_list<Counting*> all) {
    counting_ = all;
    giveMenus(application(), board_, *this);
}

void StatsPage::enableTimer() {
    const bool inVain = missed_ && channel_.silentSince() != 0;  // the wait may be long: not at once again
    const bool lost = reopenings_ != channel_.reopenings();
    refreshWith([this] { Update(); }, (!filled_ || greyed_ || lost) && !inVain);
}

void StatsPage::grey() {
    board_.grey(true);
    greyed_ = true;
}

void StatsPage::refreshUntil(Clock::time_point end, bool clear) {
    if (reopenings_ != channel_.reopenings()) {
        reopenings_ = channel_.reopenings();
        for (Counting* part : counting_) part->countAnew();
        undo_ = false;
        driverCame();
        grey();  // a channel that others use may be open again, and no request of this dialog be missed
    }
    clearing_ |= clear;
    withheld_ = kept_ = false;
    answers_.restart();
    look_ = Clock::now() + noticeable;
    end_ = end;
    channel_.interrupt.swap(interrupt_);
    refresh(clearing_);
    channel_.interrupt.swap(interrupt_);

    missed_ = answers_.missed();
    if (!withheld_) endClear();
    if (!cut()) {
        // Going through all controls at each tick would cost more than the tick.
        if (greyed_ && !kept_) board_.grey(false);
        greyed_ &= kept_;
        filled_ = true;
    }
    if (onRefreshed) onRefreshed();
}

void StatsPage::ClearStats() {
    if (!clearing_)
        for (Counting* part : counting_) part->beginClear();
    refreshUntil(Clock::time_point::max(), true);
}

void StatsPage::endClear() {
    const bool cleared =
        clearing_ && std::ranges::any_of(counting_, [](const Counting* part) { return part->changed(); });
    clearing_ = false;
    if (!cleared) return;
    for (Counting* part : counting_) part->endClear();
    undo_ = true;
}

void StatsPage::undoClear() {
    // One that was begun counts as far as it has come; the one before it is not meant.
    if (clearing_) undo_ = false;
    endClear();
    if (!std::exchange(undo_, false)) return;
    for (Counting* part : counting_) part->undoClear();
    Update();
}

bool StatsPage::withholds() {
    const Clock::time_point now = Clock::now();
    if (now >= end_) return withheld_ = true;
    if (withheld_ || now < look_) return withheld_;
    look_ = now + lookAgain;
    return withheld_ = zInputWaits(application());
}
