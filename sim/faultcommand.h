// The command "fault".
#pragma once

#include "sim/commands.h"

#include <span>
#include <string>

namespace sim {

CommandReply faultCommand(Faults& faults, std::span<const std::string> words);

// What its words mean, for "help fault".
std::string faultHelp();

}  // namespace sim
