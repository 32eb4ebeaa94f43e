#include "ui/watch/conditions.h"

#include "platform/syslog.h"
#include "platform/user.h"
#include "ui/watch/choosedlg.h"
#include "ui/watch/conditionsdlg.h"
#include "ui/watch/watchdlg.h"

#include <algorithm>
#include <fmt/format.h>

using metrics::Condition;

namespace {

int adapterOf(const Conditions::Waiting& waiting) {
    return waiting.condition.subject().place.adapter;
}

void tellSyslog(const Conditions::Waiting& waiting, Condition::Event event) {
    using platform::LogLevel;
    platform::sendSyslog(
        event == Condition::Event::raised ? LogLevel::warning : LogLevel::notice,
        metrics::logLine(waiting.condition, event, waiting.value->last(), platform::userName()));
}

}  // namespace

std::shared_ptr<Conditions> Conditions::of(zApplication& application) {
    static std::weak_ptr<Conditions> only;
    auto conditions = only.lock();
    if (!conditions) only = conditions = std::make_shared<Conditions>(application);
    return conditions;
}

void Conditions::add(const metrics::Subject& subject, const metrics::Criterion& criterion) {
    const auto isSame = [&](const Waiting& waiting) {
        return waiting.condition.subject() == subject && waiting.condition.criterion() == criterion;
    };
    if (std::ranges::any_of(all_, isSame)) return;
    const int adapter = subject.place.adapter;
    Adapter& watched = adapters_[adapter];
    if (!watched.watch) {
        watched.watch = AdapterWatch::of(application_, adapter);
        watched.listener = watched.watch->listen([this, adapter] { ticked(adapter); });
    }
    all_.push_back({.condition = {subject, criterion}, .value = watched.watch->sampler().watch(subject)});
    listeners_.tell();
}

void Conditions::remove(std::size_t position) {
    const int adapter = adapterOf(all_[position]);
    all_.erase(all_.begin() + static_cast<std::ptrdiff_t>(position));
    const auto isOfIt = [&](const Waiting& waiting) { return adapterOf(waiting) == adapter; };
    if (std::ranges::none_of(all_, isOfIt)) adapters_.erase(adapter);
    listeners_.tell();
}

void Conditions::haveSeen() {
    for (Waiting& waiting : all_) waiting.seen = true;
    listeners_.tell();
}

std::string Conditions::news(std::optional<int> adapter) const {
    std::string news;
    int count = 0;
    for (const Waiting& waiting : all_) {
        const Condition& condition = waiting.condition;
        if (waiting.seen || !condition.raised() || (adapter && adapterOf(waiting) != *adapter)) continue;
        news = nameOf(condition.subject()) + ' ' + textOf(condition.subject(), condition.criterion());
        ++count;
    }
    return count > 1 ? fmt::format("{} conditions", count) : news;
}

void Conditions::ticked(int adapter) {
    for (Waiting& waiting : all_) {
        const metrics::Watched& value = *waiting.value;
        if (adapterOf(waiting) != adapter || value.moment() == metrics::Moment{}) continue;
        const Condition::Event event = waiting.condition.sample(value.last(), value.moment());
        if (event == Condition::Event::none) continue;
        const bool raised = event == Condition::Event::raised;
        (raised ? waiting.raisedAt : waiting.overAt) = std::time(nullptr);
        if (raised) waiting.seen = false;
        tellSyslog(waiting, event);
    }
    listeners_.tell();
}

void Conditions::askFor(const metrics::Subject& subject) {
    asking_ = std::make_unique<DWatchDlg>(*this, application_, subject);
    asking_->show();
}

void Conditions::askFor(const metrics::Place& place) {
    asking_ = std::make_unique<DChooseDlg>(*this, application_, place);
    asking_->show();
}

void Conditions::list() {
    list_ = std::make_unique<DConditionsDlg>(*this, application_);
    list_->show();
}
