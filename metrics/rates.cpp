#include "metrics/rates.h"

#include "model/statecodes.h"

#include <algorithm>
#include <cassert>
#include <chrono>
#include <cmath>
#include <iterator>
#include <utility>

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
// Between readings that are kept for smoothing. Tables have megabytes.
constexpr std::chrono::seconds apart{2};

double secondsBetween(Moment before, Moment now) {
    return std::chrono::duration<double>(now - before).count();
}
double secondsBetween(const Taken& before, const Taken& now) {
    return secondsBetween(middle(before), middle(now));
}

// When the counters of a group were read; Taken() if they are those of circuits, and none are known.
Taken takenOf(const Reading& reading, const Group& group) {
    if (group.circuits && reading.bytes(QueryId::vcTable).empty()) return {};
    return reading.taken(group);
}

TableKeys keysOf(const Reading& reading, const Group& group) {
    return {reading.bytes(group.query), queryOf(group.query).size, group.keyBytes};
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

// What all rows of a group share on the way from one kept reading to the next.
class Rates::Step {
  public:
    Step(const Rates& rates, std::size_t number, const Group& group);

    // The row of the reading before, 0 of a group that is no table; or why there is none.
    std::variant<Unknown, std::size_t> rowBefore(std::size_t row) const;
    // `before`: that row.
    Rate rate(const Metric& metric, std::size_t before, std::size_t row) const;
    double seconds() const { return secondsBetween(takenBefore_, takenNow_); }
    bool hasGap(const Metric& metric, std::size_t row) const {
        const auto found = now_.gaps.find(&metric);
        return found != now_.gaps.end() && found->second[row];
    }

  private:
    Bytes rowOf(Bytes all, std::size_t row) const {
        return orderNow_ ? all.subspan(row * rowSize_, rowSize_) : all;
    }

    const Kept &before_, &now_;
    Bytes bytesBefore_, bytesNow_;
    std::size_t rowSize_;
    std::optional<Unknown> why_ = {};  // no row has a rate
    Taken takenBefore_ = {}, takenNow_ = {};
    TableKeys keysBefore_, keysNow_;
    std::shared_ptr<const KeyOrder> orderBefore_ = {}, orderNow_ = {};  // null: no table
};

Rates::Step::Step(const Rates& rates, std::size_t number, const Group& group)
    : before_(rates.kept_[number - 1]), now_(rates.kept_[number]),
      bytesBefore_(before_.reading.bytes(group.query)), bytesNow_(now_.reading.bytes(group.query)),
      rowSize_(queryOf(group.query).size), keysBefore_(keysOf(before_.reading, group)),
      keysNow_(keysOf(now_.reading, group)) {
    if (before_.driver != now_.driver)
        why_ = Unknown::driverChanged;
    else if (before_.reading.missing(group) || now_.reading.missing(group))
        why_ = Unknown::noneBefore;
    if (why_) return;
    takenBefore_ = takenOf(before_.reading, group), takenNow_ = takenOf(now_.reading, group);
    if (!group.isTable()) return;
    orderBefore_ = rates.orderOf(number - 1, group), orderNow_ = rates.orderOf(number, group);
}

std::variant<Unknown, std::size_t> Rates::Step::rowBefore(std::size_t row) const {
    if (why_) return *why_;
    if (!orderNow_) return row;
    if (orderNow_->isShared(row)) return Unknown::sharedKey;
    if (orderBefore_ == orderNow_) return row;
    return orderBefore_->find(keysBefore_, keysNow_[row]);
}

Rate Rates::Step::rate(const Metric& metric, std::size_t before, std::size_t row) const {
    const Bytes bytesBefore = rowOf(bytesBefore_, before), bytesNow = rowOf(bytesNow_, row);
    const Value valueNow = metric.read(now_.reading, bytesNow);
    if (const auto* why = std::get_if<Unknown>(&valueNow)) return *why;
    const Value valueBefore = metric.read(before_.reading, bytesBefore);
    if (std::holds_alternative<Unknown>(valueBefore)) return Unknown::noneBefore;
    if (metric.circuit &&
        metric.circuit(now_.reading, bytesNow) != metric.circuit(before_.reading, bytesBefore))
        return Unknown::noneBefore;
    return rateOf({std::get<std::uint32_t>(valueBefore), takenBefore_},
                  {std::get<std::uint32_t>(valueNow), takenNow_}, metric.wrapBits, now_.limit);
}

// Mostly that of the reading before: rows stay where they are.
const std::shared_ptr<const KeyOrder>& Rates::orderOf(std::size_t number, const Group& group) const {
    auto& order = kept_[number].orders[&group];
    if (order) return order;
    const TableKeys keys = keysOf(kept_[number].reading, group);
    if (number > 0 && keys == keysOf(kept_[number - 1].reading, group))
        order = orderOf(number - 1, group);
    else
        order = std::make_shared<const KeyOrder>(keys);
    return order;
}

void Rates::smooth(Smoothing smoothing) {
    if (smoothing == smoothing_) return;
    smoothing_ = smoothing;
    if (smoothing != Smoothing::none && kept_.size() > 1) noteUnknown(kept_.size() - 1);
}

void Rates::add(Reading reading, std::string driver, double limit) {
    kept_.push_back({std::move(reading), std::move(driver), limit});
    if (smoothing_ == Smoothing::none) {
        while (kept_.size() > 2) kept_.pop_front();
        return;
    }
    if (kept_.size() > 1) noteUnknown(kept_.size() - 1);
    const auto begun = [&](std::size_t number) { return kept_[number].reading.begun(); };
    if (kept_.size() > 3 && begun(kept_.size() - 3) - begun(kept_.size() - 4) < apart)
        leaveOut(kept_.size() - 3);
    // The oldest is needed for as long as the next one is not old enough.
    while (kept_.size() > 2 && begun(kept_.size() - 1) - begun(1) >= smoothed) kept_.pop_front();
}

void Rates::addAgain(Reading reading, std::string driver, double limit) {
    if (!kept_.empty()) kept_.pop_back();
    add(std::move(reading), std::move(driver), limit);
}

template <class IsGap> void Rates::noteGaps(std::size_t number, IsGap isGap) {
    Kept& now = kept_[number];
    for (const Group& group : groupsOf(now.reading.place().service)) {
        if (now.reading.missing(group)) continue;
        const Step step(*this, number, group);
        const std::size_t rows = group.isTable() ? now.reading.rows(group) : 1;
        for (const Metric& metric : group.metrics) {
            if (metric.kind != Kind::counter) continue;
            for (std::size_t row = 0; row < rows; ++row) {
                if (!isGap(step, metric, row)) continue;
                auto& gaps = now.gaps[&metric];
                gaps.resize(rows);
                gaps[row] = true;
            }
        }
    }
}

void Rates::noteUnknown(std::size_t number) {
    noteGaps(number, [](const Step& step, const Metric& metric, std::size_t row) {
        const auto before = step.rowBefore(row);
        const auto* known = std::get_if<std::size_t>(&before);
        return !known || std::holds_alternative<Unknown>(step.rate(metric, *known, row));
    });
}

// What was not known on the way to the reading is not known on the way to the next one.
void Rates::leaveOut(std::size_t number) {
    const Kept& left = kept_[number];
    Kept& next = kept_[number + 1];
    if (!left.gaps.empty())
        noteGaps(number + 1, [&](const Step& step, const Metric& metric, std::size_t row) {
            const auto gaps = left.gaps.find(&metric);
            if (gaps == left.gaps.end()) return false;
            const auto before = step.rowBefore(row);
            const auto* known = std::get_if<std::size_t>(&before);
            return known && gaps->second[*known];
        });
    next.limit = std::max(next.limit, left.limit);
    kept_.erase(kept_.begin() + static_cast<std::ptrdiff_t>(number));
}

std::vector<Rates::Step> Rates::stepsOf(const Group& group) const {
    std::vector<Step> steps;
    for (std::size_t number = kept_.size() - 1; number > 0; --number) {
        steps.emplace_back(*this, number, group);
        if (smoothing_ == Smoothing::none) break;
    }
    return steps;
}

Rate Rates::over(const std::vector<Step>& steps, const Metric& metric, std::size_t row) const {
    double growth = 0, seconds = 0;
    for (const Step& step : steps) {
        const auto before = step.rowBefore(row);
        const auto* why = std::get_if<Unknown>(&before);
        const bool isLast = &step == &steps.front();
        if (!isLast && (why || step.hasGap(metric, row))) break;
        const Rate rate = why ? Rate(*why) : step.rate(metric, std::get<std::size_t>(before), row);
        if (std::holds_alternative<Unknown>(rate)) {
            if (isLast) return rate;
            break;
        }
        growth += std::get<double>(rate) * step.seconds();
        seconds += step.seconds();
        if (seconds >= std::chrono::duration<double>(smoothed).count()) break;
        row = std::get<std::size_t>(before);
    }
    return growth / seconds;
}

Rate Rates::rate(const Group& group, const Metric& metric, std::size_t row) const {
    assert(metric.kind == Kind::counter && !kept_.empty());
    if (const auto why = kept_.back().reading.missing(group)) return *why;
    if (kept_.size() == 1) return Unknown::noneBefore;
    return over(stepsOf(group), metric, row);
}

void Rates::rates(const Group& group, const Metric& metric, std::vector<Rate>& rates) const {
    assert(metric.kind == Kind::counter && group.isTable() && !kept_.empty());
    const Reading& last = kept_.back().reading;
    rates.assign(last.missing(group) ? 0 : last.rows(group), Unknown::noneBefore);
    if (kept_.size() == 1) return;
    const std::vector<Step> steps = stepsOf(group);
    for (std::size_t row = 0; row < rates.size(); ++row) rates[row] = over(steps, metric, row);
}

}  // namespace metrics
