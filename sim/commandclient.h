// The sending side of a command.
#pragma once

#include <string>
#include <vector>

namespace sim {

// Sends the words to the running simulator and prints what it shows on standard output, or its refusal on
// standard error. Returns the exit status: 0, or 1 if the command was refused or no simulator runs.
int sendCommand(const std::vector<std::string>& words);

}  // namespace sim
