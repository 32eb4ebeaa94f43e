#include "metrics/sampler.h"

#include <algorithm>
#include <cassert>
#include <fmt/format.h>
#include <utility>

namespace metrics {

namespace {

// After a request without an answer nothing is asked for so many times the wait for it.
constexpr int quietFor = 3;

constexpr std::chrono::milliseconds noticeable{100};

bool isOf(QueryId query, const Group& group) {
    return group.query == query || (group.circuits && query == QueryId::vcTable);
}

bool needsState(const Subject& subject, QueryId query) {
    const Service service = subject.place.service;
    return canBeAbsent(service) && groupsOf(service).front().query == query;
}

Rate numberOf(const Value& value) {
    struct Number {
        Rate operator()(Unknown why) const { return why; }
        Rate operator()(std::uint32_t number) const { return static_cast<double>(number); }
        Rate operator()(bool flag) const { return flag ? 1.0 : 0.0; }
        Rate operator()(const State& state) const { return static_cast<double>(state.code); }
        Rate operator()(const Unnamed&) const { return Unknown::unnamed; }
        Rate operator()(const std::string&) const { return Unknown::noneBefore; }  // texts have no course
    };
    return std::visit(Number{}, value);
}

}  // namespace

void Watched::sample(const Rate& value, Moment now) {
    if (const double* number = std::get_if<double>(&value))
        series_.add(moment_ == Moment{} ? now : moment_, now, static_cast<float>(*number));
    last_ = value;
    moment_ = now;
}

std::shared_ptr<const Watched> Sampler::watch(const Subject& subject) {
    for (const auto& each : watched_)
        if (auto same = each.lock(); same && same->subject() == subject) return same;
    auto added = std::make_shared<Watched>(subject);
    watched_.push_back(added);
    return added;
}

bool Sampler::wants(const Place& place, QueryId query) const {
    if (place.adapter != adapter_) return false;
    return std::ranges::any_of(watched_, [&](const auto& each) {
        const auto watched = each.lock();
        if (!watched) return false;
        const Subject& subject = watched->subject();
        const bool here = subject.place == place || query == QueryId::vcTable;
        return here && (isOf(query, *subject.group) || needsState(subject, query));
    });
}

void Sampler::heard(const Place& place, QueryId query, bool entire, std::shared_ptr<const Reply> reply) {
    const Place whose = query == QueryId::vcTable && entire ? Place{.adapter = place.adapter} : place;
    // The circuits of signalling stand at the beginning of the table; of any other a part is of no use.
    if (!entire && (query != QueryId::vcTable || place.service != Service::signalling)) return;
    std::erase_if(heard_, [&](const Heard& each) { return each.place == whose && each.query == query; });
    heard_.push_back({whose, query, std::move(reply)});
}

void Sampler::driverCame() {
    ++drivers_;
    heard_.clear();
    limit_.reset();
}

std::string Sampler::driver() const {
    return fmt::format("{} {}", drivers_, channel_.reopenings());
}

// A page on top asks once between two ticks; it may be a little late.
bool Sampler::isFresh(const Heard& heard, Moment now, std::chrono::milliseconds interval) {
    return now - heard.reply->taken.answered < interval + interval / 2;
}

void Sampler::tick(std::chrono::milliseconds interval) {
    std::erase_if(watched_, [](const auto& each) { return each.expired(); });
    std::vector<std::shared_ptr<Watched>> all;
    for (const auto& each : watched_) all.push_back(each.lock());
    std::erase_if(places_, [&](const AtPlace& at) {
        return std::ranges::none_of(all, [&](const auto& each) { return each->subject().place == at.place; });
    });
    for (const auto& each : all)
        if (std::ranges::find(places_, each->subject().place, &AtPlace::place) == places_.end())
            places_.push_back({each->subject().place});
    if (all.empty()) return heard_.clear();

    const Moment begun = clock_();
    std::erase_if(heard_, [&](const Heard& each) { return !isFresh(each, begun, interval); });
    channel_.alive();  // notices that the driver has gone, so that nothing of the next is compared with its
    const unsigned long openings = std::exchange(openings_, channel_.reopenings());
    if (openings != openings_) limit_.reset();

    withheld_ = false;
    std::function<bool()> giveWay = [this, begun] {
        withheld_ = withheld_ || (clock_() - begun >= noticeable && interrupt && interrupt());
        return withheld_;
    };
    channel_.interrupt.swap(giveWay);
    Reader reader(channel_, clock_);
    if (begun < quiet_) reader.stop();
    for (const Heard& each : heard_) {
        if (each.reply->missing == Unknown::silent) reader.stop();
        reader.give(each.place, each.query, each.reply);
    }
    const AnswerWatch answers(channel_);
    if (!limit_) askLimit(reader);
    auto at = places_.begin();
    while (at != places_.end()) {
        read(*at, reader, all, interval);
        if (withheld_) break;
        ++at;
    }
    std::rotate(places_.begin(), at, places_.end());
    channel_.interrupt.swap(giveWay);
    if (answers.missed()) quiet_ = clock_() + quietFor * (clock_() - begun);
}

void Sampler::askLimit(Reader& reader) {
    const Reading link = reader.read({.adapter = adapter_},
                                     [](const Group& group) { return group.query == QueryId::suniStats; });
    if (!link.bytes(QueryId::suniStats).empty()) limit_ = linkLimit(link);
}

void Sampler::read(AtPlace& at, Reader& reader, const std::vector<std::shared_ptr<Watched>>& all,
                   std::chrono::milliseconds interval) {
    const auto isHere = [&](const auto& each) { return each->subject().place == at.place; };
    std::string driver = this->driver();
    Reading reading = reader.read(at.place, [&](const Group& group) {
        return std::ranges::any_of(
            all, [&](const auto& each) { return isHere(each) && each->subject().group == &group; });
    });
    if (withheld_) return;
    // Partly of one driver, and partly of the next.
    if (driver != this->driver()) driver += " lost";
    const double fastest = linkLimit(Reading(at.place));
    if (reading.begun() - at.last < interval / 2) {
        at.rates.addAgain(reading, std::move(driver), limit_.value_or(fastest));
    } else {
        at.rates.add(reading, std::move(driver), limit_.value_or(fastest));
        at.last = reading.begun();
    }
    for (const auto& each : all)
        if (isHere(each)) sample(*each, reading, at.rates);
}

void Sampler::sample(Watched& watched, const Reading& reading, const Rates& rates) {
    const Subject& subject = watched.subject();
    const Group& group = *subject.group;
    if (const auto why = reading.missing(group)) return watched.sample(*why, reading.begun());
    std::size_t row = 0;
    if (group.isTable()) {
        const auto found = reading.find(group, subject.key, watched.row_);
        if (!found) return watched.sample(Unknown::noRow, reading.begun());
        row = watched.row_ = *found;
    }
    if (subject.isRate() && group.circuits && reading.missing(QueryId::vcTable))
        return watched.sample(*reading.missing(QueryId::vcTable), reading.begun());
    const Moment taken = middle(reading.taken(group));
    if (taken == watched.moment()) return;  // a page is late: the same answer again
    watched.sample(subject.isRate() ? rates.rate(group, *subject.metric, row)
                                    : numberOf(reading.value(group, *subject.metric, row)),
                   taken);
}

}  // namespace metrics
