#include "metrics/subject.h"

namespace metrics {

std::string nameOf(const Subject& subject) {
    std::string name = pathOf(subject.place) + '.';
    if (subject.group->isTable()) name += subject.group->table + ('[' + subject.key + "].");
    return name + subject.metric->name + (subject.isRate() ? "/s" : "");
}

std::string unitOf(const Subject& subject) {
    return subject.metric->unit + std::string(subject.isRate() ? "/s" : "");
}

}  // namespace metrics
