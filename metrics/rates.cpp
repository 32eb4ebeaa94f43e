#include "metrics/rates.h"

#include "model/statecodes.h"

#include <algorithm>
#include <cassert>
#include <chrono>
#include <cmath>
#include <iterator>

namespace metrics {

namespace {

// A cell has 424 bits. SONET leaves 149.76 Mbit/s of 155.52 for cells.
constexpr struct {
    LinkKind kind;
    double cells;  // per second
} links[] = {
    {link25, 60'377},
    {linkMultimode, 353'208},
    {linkSingleMode, 353'208},
    {link155Utp, 353'208},
};

constexpr std::chrono::seconds smoothed{10};

double secondsBetween(Moment before, Moment now) {
    return std::chrono::duration<double>(now - before).count();
}
double secondsBetween(const Taken& before, const Taken& now) {
    return secondsBetween(middle(before), middle(now));
}

std::string keyText(const Value& key) {
    if (const auto* number = std::get_if<std::uint32_t>(&key)) return std::to_string(*number);
    return std::get<std::string>(key);
}

std::string keyOf(const Reading& reading, const Group& group, std::size_t row) {
    const auto isKey = [&](const Metric& metric) { return std::string_view(metric.name) == group.key; };
    const auto key = std::ranges::find_if(group.metrics, isKey);
    return keyText(reading.value(group, *key, row));
}

}  // namespace

double linkLimit(const Reading& adapter) {
    return linkLimit(SuniStatsView(adapter.bytes(QueryId::suniStats)));
}

double linkLimit(const SuniStatsView& link) {
    const auto* const row = std::ranges::find(
        links, link.linkKind(), [](const auto& each) { return static_cast<std::uint32_t>(each.kind); });
    if (row != std::end(links)) return row->cells;
    return std::ranges::max(links, {}, [](const auto& each) { return each.cells; }).cells;
}

Rate rateOf(const Count& before, const Count& now, unsigned wrapBits, double limit) {
    const double seconds = secondsBetween(before.taken, now.taken);
    if (seconds <= 0) return Unknown::noneBefore;
    const double longest = secondsBetween(before.taken.asked, now.taken.answered);
    if (limit * longest >= std::ldexp(1.0, static_cast<int>(wrapBits))) return Unknown::mayHaveWrapped;
    const std::uint32_t mask = ~std::uint32_t{0} >> (32 - wrapBits);
    const std::uint32_t growth = (now.value - before.value) & mask;
    if (growth > limit * longest) return Unknown::beyondLink;
    return growth / seconds;
}

const Rates::Rows& Rates::Kept::rowsOf(const Group& group) const {
    const auto [found, isNew] = rows.try_emplace(&group);
    if (isNew)
        for (std::size_t row = 0; row < reading.rows(group); ++row) {
            const auto [same, first] = found->second.try_emplace(keyOf(reading, group, row), row);
            if (!first) same->second.reset();
        }
    return found->second;
}

std::variant<Unknown, std::size_t> Rates::Kept::find(const Group& group, const std::string& key) const {
    if (reading.missing(group)) return Unknown::noneBefore;
    if (!group.isTable()) return std::size_t{0};
    const Rows& all = rowsOf(group);
    const auto found = all.find(key);
    if (found == all.end()) return Unknown::noneBefore;
    if (!found->second) return Unknown::sharedKey;
    return *found->second;
}

void Rates::add(Reading reading, std::string driver, double limit) {
    kept_.push_back({std::move(reading), std::move(driver), limit});
    const auto isOld = [&](const Kept& kept) {
        return smoothing_ == Smoothing::none ||
               kept_.back().reading.begun() - kept.reading.begun() >= smoothed;
    };
    // The oldest is needed for as long as the next one is not old enough.
    while (kept_.size() > 2 && isOld(kept_[1])) kept_.pop_front();
}

Rates::Step Rates::step(const Kept& before, const Kept& now, const Group& group, const Metric& metric,
                        const std::string& key) {
    if (before.driver != now.driver) return {Unknown::driverChanged, 0};
    const auto rowBefore = before.find(group, key), rowNow = now.find(group, key);
    for (const auto& row : {rowNow, rowBefore})
        if (const auto* why = std::get_if<Unknown>(&row)) return {*why, 0};
    const auto valueOf = [&](const Kept& kept, const Metric& of, const auto& row) {
        return kept.reading.value(group, of, std::get<std::size_t>(row));
    };
    const Value valueNow = valueOf(now, metric, rowNow), valueBefore = valueOf(before, metric, rowBefore);
    if (const auto* why = std::get_if<Unknown>(&valueNow)) return {*why, 0};
    if (std::holds_alternative<Unknown>(valueBefore)) return {Unknown::noneBefore, 0};
    if (metric.circuit) {
        Metric circuit = metric;
        circuit.read = metric.circuit;
        if (valueOf(now, circuit, rowNow) != valueOf(before, circuit, rowBefore))
            return {Unknown::noneBefore, 0};
    }
    const Taken takenBefore = before.reading.taken(group), takenNow = now.reading.taken(group);
    return {rateOf({std::get<std::uint32_t>(valueBefore), takenBefore},
                   {std::get<std::uint32_t>(valueNow), takenNow}, metric.wrapBits, now.limit),
            secondsBetween(takenBefore, takenNow)};
}

Rate Rates::rate(const Group& group, const Metric& metric, std::size_t row) const {
    assert(metric.kind == Kind::counter && !kept_.empty());
    const Kept& last = kept_.back();
    if (const auto why = last.reading.missing(group)) return *why;
    const std::string key = group.isTable() ? keyOf(last.reading, group, row) : std::string();
    if (kept_.size() == 1) return Unknown::noneBefore;
    double growth = 0, seconds = 0;
    for (std::size_t i = kept_.size() - 1; i > 0; --i) {
        const Step now = step(kept_[i - 1], kept_[i], group, metric, key);
        const double* rate = std::get_if<double>(&now.rate);
        if (!rate) return seconds > 0 ? Rate(growth / seconds) : now.rate;
        growth += *rate * now.seconds;
        seconds += now.seconds;
        if (smoothing_ == Smoothing::none || seconds >= std::chrono::duration<double>(smoothed).count())
            break;
    }
    return growth / seconds;
}

}  // namespace metrics
