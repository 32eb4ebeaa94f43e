// The simulator's state as text.
#pragma once

#include "sim/peers.h"
#include "sim/place.h"

#include <string>

namespace sim {

std::string showAll(const State& state);  // a line for each instance
std::string showInstance(const State& state, std::string_view target, Instance where);  // every field and row

// The fields of row `index` (from 0) of a table as " name=value ...".
std::string showRow(const State& state, const Request& table, const Rows& rows, Instance where,
                    std::size_t index);

std::string showFields();  // what can be set: target, field, kind of value

}  // namespace sim
