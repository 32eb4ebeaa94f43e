#include "metrics/condition.h"

#include "platform/safetext.h"

#include <algorithm>
#include <fmt/format.h>

namespace metrics {

namespace {

constexpr std::int64_t codes = 256;  // states have those below

std::int64_t codeOf(double number) {
    return static_cast<std::int64_t>(number);
}

bool sameWords(const Metric& metric, std::int64_t one, std::int64_t other) {
    if (one == other) return true;
    const char *words = metric.words(one), *otherWords = metric.words(other);
    return words && otherWords && std::string_view(words) == otherWords;
}

std::string numberText(const Subject& subject, double number) {
    // Small rates are often less than one a second.
    std::string text = number != 0 && number < 10 && number != static_cast<double>(codeOf(number))
                           ? fmt::format("{:.2f}", number)
                           : fmt::format("{:.0f}", number);
    const std::string unit = unitOf(subject);
    return unit.empty() ? text : text + ' ' + unit;
}

std::string knownText(const Subject& subject, double value) {
    switch (subject.metric->kind) {
    case Kind::flag:
    case Kind::alarm:
        return value != 0 ? "on" : "off";
    case Kind::state: {
        const char* words = subject.metric->words(codeOf(value));
        return words ? words : fmt::format("state {}", codeOf(value));
    }
    default:
        return numberText(subject, value);
    }
}

const char* wordOf(Comparison test) {
    switch (test) {
    case Comparison::above:
        return "above";
    case Comparison::below:
        return "below";
    case Comparison::is:
        return "is";
    case Comparison::isNot:
        return "is not";
    }
    return "";
}

}  // namespace

bool canBeWatched(const Metric& metric) {
    return metric.kind != Kind::text && metric.kind != Kind::address;
}

std::vector<State> statesOf(const Metric& metric) {
    std::vector<State> states;
    for (std::int64_t code = 0; code < codes; ++code) {
        const char* words = metric.words(code);
        const auto isSame = [&](const State& state) { return sameWords(metric, state.code, code); };
        if (words && std::ranges::none_of(states, isSame)) states.push_back({code, words});
    }
    return states;
}

std::string textOf(const Subject& subject, const Rate& value) {
    if (const auto* why = std::get_if<Unknown>(&value)) return wordsOf(*why);
    return knownText(subject, std::get<double>(value));
}

std::string textOf(const Subject& subject, const Criterion& criterion) {
    return fmt::format("{} {}", wordOf(criterion.test), knownText(subject, criterion.operand));
}

std::string textOf(std::chrono::seconds time) {
    constexpr std::chrono::seconds minute = std::chrono::minutes(1);
    return time >= minute && time % minute == time.zero() ? fmt::format("{} min", time / minute)
                                                          : fmt::format("{} s", time.count());
}

bool Condition::meets(double value) const {
    const auto equals = [&] {
        return subject_.metric->kind == Kind::state
                   ? sameWords(*subject_.metric, codeOf(value), codeOf(criterion_.operand))
                   : value == criterion_.operand;
    };
    switch (criterion_.test) {
    case Comparison::above:
        return value > criterion_.operand;
    case Comparison::below:
        return value < criterion_.operand;
    case Comparison::is:
        return equals();
    case Comparison::isNot:
        return !equals();
    }
    return false;
}

Condition::Event Condition::sample(const Rate& value, Moment now) {
    std::optional<bool> met;
    if (const double* known = std::get_if<double>(&value)) met = meets(*known);
    now_ = std::max(now_, now);
    if (met != met_) since_ = now_;
    met_ = met;
    const auto wait = raised_ ? std::max(criterion_.hold, leastOver) : criterion_.hold;
    if (!met_ || *met_ == raised_ || now_ - since_ < wait) return Event::none;
    raised_ = *met_;
    return raised_ ? Event::raised : Event::over;
}

std::string logLine(const Condition& condition, Condition::Event event, const Rate& value,
                    std::string_view user) {
    using platform::fieldValue;
    return fmt::format(
        "watch={} value={} condition={} hold={} now={} user={}",
        event == Condition::Event::raised ? "raised" : "over", fieldValue(nameOf(condition.subject())),
        fieldValue(textOf(condition.subject(), condition.criterion())), condition.criterion().hold.count(),
        fieldValue(textOf(condition.subject(), value)), fieldValue(user));
}

}  // namespace metrics
