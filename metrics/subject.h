// What can be watched: a counter, which is watched by its rate, a number, a state or a flag of one adapter or
// service, or of a row of one of its tables.
#pragma once

#include "metrics/metric.h"

#include <string>

namespace metrics {

struct Subject {
    Place place;
    const Group* group;
    const Metric* metric;
    std::string key;  // of the row of a table, see Reading::key(); else empty

    bool operator==(const Subject&) const = default;

    bool isRate() const { return metric->kind == Kind::counter; }
};

// "adapter1/lec2.connections[33].txPackets", and "/s" behind it if its rate is watched.
std::string nameOf(const Subject& subject);
// "packets/s", "connections"; "" for what has no unit.
std::string unitOf(const Subject& subject);

}  // namespace metrics
