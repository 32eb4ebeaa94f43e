#include "ui/stats/statspage.h"

#include "driver/dai_io.h"
#include "model/settings.h"
#include "toolkit/window/inputwaits.h"
#include "ui/adapterwatch.h"
#include "ui/leavable.h"
#include "ui/stats/statsmenu.h"

#include <algorithm>
#include <fmt/format.h>
#include <string_view>
#include <utility>

namespace {

// From here on a refresh is noticed by somebody who has pressed a button meanwhile.
constexpr std::chrono::milliseconds noticeable{100};
// Then how often is looked: a table of thousands of quick requests must not look at each.
constexpr std::chrono::milliseconds lookAgain{20};

// Readings further apart are not compared.
constexpr std::chrono::seconds longAgo{10};

}  // namespace

StatsPage::StatsPage(const StatsSource& source, const zLayout& layout)
    : TimerPage(source.application), adapter_(source.adapter), board_(source.notebook.addPage(layout)),
      channel_(source.channel), answers_(source.channel), reopenings_(source.channel.reopenings()),
      linkLimit_(source.linkLimit) {}

void StatsPage::giveMenus() {
    ::giveMenus(application(), board_, *this);
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
        if (const auto watch = AdapterWatch::present(place().adapter)) watch->sampler().driverCame();
        driverCame();
        grey();  // a channel that others use may be open again, and no request of this dialog be missed
    }
    clearing_ |= clear;
    withheld_ = kept_ = false;
    answers_.restart();
    const LeavableWaits leavable(application(), channel_);
    look_ = Clock::now() + (leavable.atOnce() ? Clock::duration(0) : noticeable);
    end_ = end;
    replies_.clear();
    asked_ = Clock::now();
    channel_.interrupt.swap(interrupt_);
    channel_.onQuery.swap(heard_);
    refresh(clearing_);
    channel_.onQuery.swap(heard_);
    channel_.interrupt.swap(interrupt_);

    missed_ = answers_.missed();
    if (showsRates_) {
        if (!withheld_) addRates(reopenings_);
        for (Rated* part : rated_) part->write(cut() ? nullptr : &rates_);
    }
    if (!withheld_) endClear();
    if (!cut()) {
        // Going through all controls at each tick would cost more than the tick.
        if (greyed_ && !kept_) board_.grey(false);
        greyed_ &= kept_;
        filled_ = true;
    }
    if (onRefreshed) onRefreshed();
}

// A query that the user has cut short says nothing.
void StatsPage::heard(const EndedQuery& ended) {
    const metrics::Taken taken{asked_, Clock::now()};
    asked_ = taken.answered;
    if (ended.query.outcome() == Outcome::withheld) return;
    if (ended.id == QueryId::suniStats && !ended.bytes.empty())
        linkLimit_ = metrics::linkLimit(SuniStatsView(ended.bytes));
    const auto watch = AdapterWatch::present(place().adapter);
    const bool watched = watch && watch->sampler().wants(place(), ended.id);
    if (!showsRates_ && !watched) return;
    auto reply = std::make_shared<metrics::Reply>(metrics::replyOf(ended.query, ended.bytes));
    reply->taken = taken;
    if (watched) watch->sampler().heard(place(), ended.id, ended.entire, reply);
    replies_.emplace_back(ended.id, std::move(reply));
}

void StatsPage::addRates(unsigned long reopenings) {
    // Not compared with counters of another service, or from before the page came on top.
    if (ratesOf_ != place() || asked_ - lastReading_ > longAgo + std::chrono::milliseconds(timerTime)) {
        ratesOf_ = place();
        rates_ = metrics::Rates(smoothed_ ? metrics::Smoothing::tenSeconds : metrics::Smoothing::none);
    }
    // A refresh between two ticks, as Clear makes one.
    const bool early = asked_ - lastReading_ < std::chrono::milliseconds(timerTime) / 2;
    if (!early) lastReading_ = asked_;
    metrics::Reader reader(channel_);
    reader.stop();
    for (const auto& [query, reply] : replies_) reader.give(place(), query, reply);
    // The driver has gone in the middle: part of the reading is of the next one.
    const bool lost = reopenings != channel_.reopenings();
    std::string driver = fmt::format("{}{}", reopenings, lost ? " lost" : "");
    if (early)
        rates_.addAgain(reader.read(place()), std::move(driver), linkLimit_);
    else
        rates_.add(reader.read(place()), std::move(driver), linkLimit_);
}

void StatsPage::showRates(bool on) {
    if (on == showsRates_) return;
    showsRates_ = on;
    lastReading_ = {};
    for (Rated* part : rated_) part->showRates(on);
    Update();
}

void StatsPage::smoothRates(bool on) {
    smoothed_ = on;
    rates_.smooth(on ? metrics::Smoothing::tenSeconds : metrics::Smoothing::none);
}

std::optional<metrics::Subject> StatsPage::subjectIn(const zControl& control) const {
    for (const Rated* part : rated_)
        if (auto subject = part->counted(control, place())) return subject;
    const auto shown = std::ranges::find(states_, std::string_view(control.row().name), &ShownState::control);
    if (shown == states_.end()) return {};
    return metrics::subjectOf(place(), "", shown->value);
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
