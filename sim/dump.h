// The simulator's state as lines that can be compared: every value in a line of its own, in a fixed order,
// lists sorted. Adapters and instances count from 1.
#pragma once

#include "sim/state.h"

#include <string>

namespace sim {

// The configuration of the driver, in lines that begin with "config": what the files can hold, without times
// and counters. Of a service that does not run the text says only that. It is equal for two drivers that
// behave alike.
std::string dumpConfig(const State& state);

// The clock, the traces, every field and row of every reply, and what commands have forced.
std::string dumpState(const State& state);

}  // namespace sim
