// Conditions on watched values: when they are raised and over, whatever the values and the ticks do.
#include "metrics/condition.h"

#include <gtest/gtest.h>

using metrics::Comparison;
using metrics::Condition;
using metrics::Criterion;
using metrics::Moment;
using metrics::Place;
using metrics::Rate;
using metrics::Service;
using metrics::Subject;
using metrics::Unknown;
using namespace std::chrono_literals;

namespace {

constexpr Place adapter, signalling{Service::signalling, 0, 0}, lec2{Service::lec, 0, 1},
    les1{Service::les, 0, 0}, ip{Service::ip, 0, 0};

Subject cells() {
    return metrics::subjectOf(adapter, "", "rxCells");
}

// Samples as "moment:value", a '?' for what is unknown; the events as "moment+" and "moment-".
std::string events(const Subject& subject, const Criterion& criterion, const std::string& samples) {
    Condition condition(subject, criterion);
    std::istringstream in(samples);
    std::string seen, value;
    for (double at = 0; in >> at;) {
        in.ignore(1) >> value;
        const Rate rate = value == "?" ? Rate(Unknown::driverChanged) : Rate(std::stod(value));
        const auto event = condition.sample(rate, Moment(1000s) + std::chrono::milliseconds(int(at * 1000)));
        if (event != Condition::Event::none)
            seen += fmt::format("{}{} ", at, event == Condition::Event::raised ? '+' : '-');
    }
    return seen;
}

}  // namespace

TEST(Conditions, AreRaisedAndOverOnce) {
    const struct {
        const char* what;
        Criterion criterion;
        const char *samples, *events;
    } rows[] = {
        {"above", {Comparison::above, 100, 3s}, "0:101 1:150 2:101 3:101 4:500 5:101", "3+ "},
        {"the threshold is not above itself", {Comparison::above, 100, 0s}, "0:100 1:100 2:100.5", "2+ "},
        {"the threshold is not below itself", {Comparison::below, 1, 0s}, "0:1 1:1 2:0.9", "2+ "},
        {"a break", {Comparison::above, 100, 3s}, "0:101 1:101 2:100 3:101 4:101 5:101 6:101", "6+ "},
        {"no hold time", {Comparison::above, 0, 0s}, "0:0 1:1 2:0 3:0", "1+ "},
        {"no hold time, and over after ten seconds",
         {Comparison::above, 0, 0s},
         "0:1 1:0 5:0 10.9:0 11:0 12:1",
         "0+ 11- 12+ "},
        {"over after the hold time",
         {Comparison::above, 9, 20s},
         "0:10 20:10 21:9 40:9 41:9 60:9",
         "20+ 41- "},
        {"trembles around the threshold",
         {Comparison::above, 100, 2s},
         "0:101 1:99 2:101 3:99 4:101 5:101 6:101 7:99 8:101 9:99 12:99 15:101 16:99 25:99 26:99 27:101",
         "6+ 26- "},
        {"faster than it is over",
         {Comparison::above, 100, 0s},
         "0:101 1:99 5:99 9:101 10:99 19:99 19.5:101",
         "0+ "},
        {"unknown breaks the hold",
         {Comparison::above, 100, 3s},
         "0:101 1:101 2:? 3:101 4:101 5:101 6:101",
         "6+ "},
        {"unknown is not over",
         {Comparison::above, 100, 0s},
         "0:101 1:? 20:? 40:? 41:99 50:99 51:99",
         "0+ 51- "},
        {"unknown breaks what is nearly over",
         {Comparison::above, 9, 0s},
         "0:10 1:9 10:9 10.5:? 11:9 12:9 21:9",
         "0+ 21- "},
        {"unknown from the beginning", {Comparison::below, 5, 0s}, "0:? 1:? 2:4", "2+ "},
        {"a driver that comes anew twice",
         {Comparison::above, 5, 4s},
         "0:6 2:? 3:? 4:6 6:? 7:6 10:6 11:6",
         "11+ "},
        {"late ticks make no break", {Comparison::above, 5, 60s}, "0:6 45:6 61:6", "61+ "},
        {"one late tick", {Comparison::above, 5, 60s}, "0:6 500:6 1000:5 1100:5", "500+ 1100- "},
        {"the same sample again", {Comparison::above, 5, 2s}, "0:6 0:6 1:6 1:6 1:6 2:6 2:6", "2+ "},
        {"an hour", {Comparison::above, 5, metrics::longestHold}, "0:6 1800:6 3599.9:6 3600:6", "3600+ "},
    };
    for (const auto& row : rows)
        EXPECT_EQ(events(cells(), row.criterion, row.samples), row.events) << row.what;
}

TEST(Conditions, OfStatesFlagsAndAlarms) {
    const Subject state = metrics::subjectOf(lec2, "", "state"), client = metrics::subjectOf(ip, "", "state"),
                  running = metrics::subjectOf(lec2, "", "running"),
                  alarm = metrics::subjectOf(adapter, "", "lossOfSignal");
    const struct {
        const Subject& subject;
        Criterion criterion;
        const char *samples, *events, *text;
    } rows[] = {
        {state, {Comparison::isNot, 6, 2s}, "0:6 1:2 2:3 3:4 4:6", "3+ ", "is not Joined"},
        {state, {Comparison::is, 0, 0s}, "0:6 1:0", "1+ ", "is no such client"},
        {state, {Comparison::isNot, 6, 0s}, "0:6 1:77", "1+ ", "is not Joined"},
        {client,
         {Comparison::is, 1, 5s},
         "0:0 1:1 2:2 4:4 6:3 7:5",
         "6+ ",
         "is Starting"},  // four codes for it
        {client, {Comparison::isNot, 1, 0s}, "0:4 1:2 2:5", "2+ ", "is not Starting"},
        {running, {Comparison::is, 0, 1s}, "0:1 1:0 2:0", "2+ ", "is off"},
        {alarm, {Comparison::is, 1, 0s}, "0:0 1:? 2:1 3:0 13:0", "2+ 13- ", "is on"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(events(row.subject, row.criterion, row.samples), row.events) << row.text;
        EXPECT_EQ(metrics::textOf(row.subject, row.criterion), row.text);
    }
}

// Every state that can be watched can be chosen by words of its own.
TEST(Conditions, StatesHaveWords) {
    const auto words = [](const Subject& subject) {
        std::vector<std::string> all;
        for (const metrics::State& state : metrics::statesOf(*subject.metric)) all.emplace_back(state.words);
        return all;
    };
    EXPECT_THAT(words(metrics::subjectOf(lec2, "", "state")),
                testing::ElementsAre("no such client", "Starting, or on PVCs", "Configuring", "Joining",
                                     "Registering", "Connecting to the BUS", "Joined"));
    EXPECT_THAT(words(metrics::subjectOf(les1, "", "state")),
                testing::ElementsAre("no such server", "Starting or Serving"));
    EXPECT_THAT(words(metrics::subjectOf(ip, "", "state")),
                testing::ElementsAre("no such client", "Starting", "Running"));
    EXPECT_THAT(words(metrics::subjectOf(signalling, "", "ilmiState")),
                testing::Contains("ILMI Not configured"));
    for (const metrics::Group& group : metrics::groups())
        for (const metrics::Metric& metric : group.metrics)
            EXPECT_EQ(metric.kind == metrics::Kind::state, metric.words != nullptr) << metric.name;
}

TEST(Conditions, AreToldInWords) {
    const Subject packets = metrics::subjectOf(ip, "connections", "rxPackets", "10.0.0.7"),
                  open = metrics::subjectOf({Service::lecs, 0, 0}, "", "connectionsOpen");
    const struct {
        const Subject& subject;
        Rate value;
        const char* text;
    } values[] = {
        {packets, 0.0, "0 packets/s"},
        {packets, 0.25, "0.25 packets/s"},
        {packets, 7.0, "7 packets/s"},
        {packets, 1234.56, "1235 packets/s"},
        {open, 3.0, "3 connections"},
        {packets, Unknown::noRow, "the table has no such row"},
        {metrics::subjectOf(lec2, "", "state"), 9.0, "state 9"},
    };
    for (const auto& row : values) EXPECT_EQ(metrics::textOf(row.subject, row.value), row.text);
    EXPECT_EQ(metrics::textOf(90s), "90 s");
    EXPECT_EQ(metrics::textOf(3600s), "60 min");

    Condition condition(packets, {Comparison::above, 100, 10s});
    EXPECT_EQ(
        metrics::logLine(condition, Condition::Event::raised, 250.4, "a \"b\""),
        R"(watch=raised value=adapter1/ip.connections.10.0.0.7.rxPackets/s condition="above 100 packets/s" )"
        R"(hold=10 now="250 packets/s" user="a \"b\"")");
}
