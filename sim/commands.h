// The commands: what "tvsim ctl" sends to the running simulator.
#pragma once

#include "sim/faults.h"
#include "sim/requestlog.h"
#include "sim/state.h"

#include <string>
#include <vector>

namespace sim {

struct CommandReply {
    bool ok = true;
    bool quit = false;  // the simulator is to end after this reply
    std::string text;   // what the command shows, or why it was refused
};

// Runs commands on these parts of the simulator, which it does not own.
struct Commands {
    State& state;
    Faults& faults;
    RequestLog& log;

    CommandReply run(const std::vector<std::string>& words);
};

// All commands, or one of them. Empty for a command that does not exist.
std::string commandHelp(std::string_view command = {});

}  // namespace sim
