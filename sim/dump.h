// The simulator's state as lines that can be compared: every value in a line of its own, in a fixed order,
// lists sorted. Adapters and instances count from 1.
#pragma once

#include "sim/state.h"

#include <string>

namespace sim {

// What the files can hold and the driver was told, in lines that begin with "config": no times, no counters.
// Of a service that does not run only that. Equal for two drivers that will behave alike.
std::string dumpConfig(const State& state);

// The clock, the traces, every field and row of every reply, and what commands have forced.
std::string dumpState(const State& state);

}  // namespace sim
