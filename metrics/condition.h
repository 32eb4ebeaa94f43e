// Conditions on watched values: a rate or a number above or below a threshold, a state that is or is not a
// certain one, a flag or an alarm that is on or off.
//
// A condition is raised when it has been met for its hold time, and over when it has not been met for as
// long, ten seconds at least: a value that trembles around the threshold raises it once. Both times are
// without a break. An unknown sample breaks them, since nobody knows whether the condition was met; it raises
// nothing, and ends nothing.
//
// Between two samples that agree the condition counts as met, or as not met, all the time: a late tick makes
// no break.
#pragma once

#include "metrics/rates.h"
#include "metrics/subject.h"

#include <chrono>
#include <string>
#include <vector>

namespace metrics {

enum class Comparison : std::uint8_t { above, below, is, isNot };

struct Criterion {
    Comparison test = Comparison::above;
    // A number, the code of a state (the first one with these words), or 0 and 1 for a flag that is off or
    // on.
    double operand = 0;
    std::chrono::seconds hold{0};

    bool operator==(const Criterion&) const = default;
};

constexpr std::chrono::seconds longestHold = std::chrono::hours(1);
constexpr std::chrono::seconds leastOver{10};  // what is not met for less is not over

// Texts and addresses cannot be watched.
bool canBeWatched(const Metric& metric);

// The states that a value can be in: those with words. Several with the same words are one.
std::vector<State> statesOf(const Metric& metric);

// "0.25 packets/s", "120 packets/s", "on", "Joined", or why it is unknown.
std::string textOf(const Subject& subject, const Rate& value);
// "above 100 packets/s", "is not Joined", "is on"
std::string textOf(const Subject& subject, const Criterion& criterion);
// "10 s", "5 min"
std::string textOf(std::chrono::seconds time);

class Condition {
  public:
    Condition(const Subject& subject, const Criterion& criterion)
        : subject_(subject), criterion_(criterion) {}

    const Subject& subject() const { return subject_; }
    const Criterion& criterion() const { return criterion_; }

    enum class Event : std::uint8_t { none, raised, over };
    // The next sample, or the same once more. A moment before that of the last sample counts as that one.
    Event sample(const Rate& value, Moment now);

    bool raised() const { return raised_; }

    // Of the last sample; nothing when it was unknown, or when there was none.
    std::optional<bool> met() const { return met_; }
    // For how long that has been so, without a break.
    std::chrono::seconds lasted() const { return std::chrono::floor<std::chrono::seconds>(now_ - since_); }

  private:
    bool meets(double value) const;

    Subject subject_;
    Criterion criterion_;
    bool raised_ = false;
    std::optional<bool> met_;
    Moment since_ = {}, now_ = {};
};

// What syslog is told of an event, as fields of the form name=value; `user` watches.
std::string logLine(const Condition& condition, Condition::Event event, const Rate& value,
                    std::string_view user);

}  // namespace metrics
