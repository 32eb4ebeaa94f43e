// The simulator's state as text.
#pragma once

#include "sim/place.h"

#include <string>

namespace sim {

std::string showAll(const State& state);  // a line for each instance
std::string showInstance(const State& state, std::string_view target, Instance where);  // every field and row
std::string showFields();  // what can be set: target, field, kind of value

}  // namespace sim
