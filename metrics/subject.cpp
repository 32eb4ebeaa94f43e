#include "metrics/subject.h"

#include "metrics/reading.h"

#include <algorithm>
#include <stdexcept>

namespace metrics {

const Group& tableOf(Service service, std::string_view table) {
    for (const Group& group : groupsOf(service))
        if (group.table == table) return group;
    throw std::logic_error("there is no table " + std::string(table));
}

Subject subjectOf(const Place& place, std::string_view table, std::string_view name, std::string key) {
    for (const Group& group : groupsOf(place.service))
        for (const Metric& metric : group.metrics)
            if (group.table == table && metric.name == name) return {place, &group, &metric, std::move(key)};
    throw std::logic_error("there is no value " + std::string(name));
}

Value valueIn(const Metric& metric, Bytes bytes) {
    static const Reading alone({});
    return metric.read(alone, bytes);
}

std::string keyIn(const Group& group, Bytes row) {
    const auto isKey = [&](const Metric& metric) { return std::string_view(metric.name) == group.key; };
    const Value key = valueIn(*std::ranges::find_if(group.metrics, isKey), row);
    if (const auto* number = std::get_if<std::uint32_t>(&key)) return std::to_string(*number);
    return std::get<std::string>(key);
}

std::string nameOf(const Subject& subject) {
    std::string name = pathOf(subject.place) + '.';
    if (subject.group->isTable()) name += subject.group->table + ('.' + subject.key + '.');
    return name + subject.metric->name + (subject.isRate() ? "/s" : "");
}

std::string unitOf(const Subject& subject) {
    return subject.metric->unit + std::string(subject.isRate() ? "/s" : "");
}

}  // namespace metrics
