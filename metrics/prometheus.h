// What Prometheus is told, as tables: the families, and which values of the driver are their samples.
//
// A value that is unknown is no sample. A sample of an adapter has the label `adapter` ("adapter1"), one of a
// service on it `service` ("lec2"), too.
#pragma once

#include "metrics/exposition.h"
#include "metrics/reading.h"

namespace metrics {

std::span<const Family> families();

Labels labelsOf(const Place& place);

// Tables are counted; their rows can be told one by one: thousands of samples that come and go.
enum class Detail { counts, rows };

// Whether anything of a group is told.
bool isTold(const Group& group, Detail detail);

// The samples of an adapter or service. Of a table's rows with the same key none is told.
void tell(const Reading& reading, Detail detail, Exposition& exposition);

// One sample for each word that a state can have: 1 for the present one, 0 for the others.
void tellState(std::string_view family, const Labels& labels, const std::vector<std::string>& words,
               const std::string& present, Exposition& exposition);

}  // namespace metrics
