// What can be watched: a counter, which is watched by its rate, a number, a state or a flag of one adapter or
// service, or of a row of one of its tables.
#pragma once

#include "metrics/metric.h"

#include <string>
#include <string_view>

namespace metrics {

struct Subject {
    Place place;
    const Group* group;
    const Metric* metric;
    std::string key;  // of the row of a table, see Reading::key(); else empty

    bool operator==(const Subject&) const = default;

    bool isRate() const { return metric->kind == Kind::counter; }
};

// A table of a service. Throws std::logic_error if there is none.
const Group& tableOf(Service service, std::string_view table);
// By name; `table` is empty for values of the service itself. Throws std::logic_error if there is none.
Subject subjectOf(const Place& place, std::string_view table, std::string_view name, std::string key = {});

// Of a reply or a row of a table, without the replies beside it: what is read from another table, such as the
// counters of its circuits, is unknown.
Value valueIn(const Metric& metric, Bytes bytes);
// The key of a row of a table, see Reading::key().
std::string keyIn(const Group& group, Bytes row);

// "adapter1/lec2.connections.33.txPackets", and "/s" behind it if its rate is watched.
std::string nameOf(const Subject& subject);
// "packets/s", "connections"; "" for what has no unit.
std::string unitOf(const Subject& subject);

}  // namespace metrics
