// The commands: what "tvsim ctl" sends to the running simulator.
#pragma once

#include "platform/safetext.h"
#include "sim/faults.h"
#include "sim/requestlog.h"
#include "sim/state.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace sim {

constexpr std::size_t longestCommand = 65536;  // bytes of its words, each with its end

struct CommandReply {
    bool ok = true;
    bool quit = false;     // the simulator is to end after this reply
    bool misused = false;  // the words are not of the command's form
    std::string text{};    // what the command shows, or why it was refused

    // Reasons repeat what was typed, and are read on a terminal.
    static CommandReply refusal(std::string_view reason) {
        return {.ok = false, .text = platform::escaped(reason)};
    }
    static CommandReply misuse(std::string_view reason) {
        return {.ok = false, .misused = true, .text = platform::escaped(reason)};
    }
};

// Runs commands on these parts of the simulator, which it does not own.
struct Commands {
    State& state;
    Faults& faults;
    RequestLog& log;

    CommandReply run(const std::vector<std::string>& words);
};

// The form of the command with this name, or of the one that somebody who typed the word first may have
// meant, and an example. Empty if there is none.
std::string commandForm(const std::string& word);

// All commands, or one of them. Empty for a command that does not exist.
std::string commandHelp(std::string_view command = {});

}  // namespace sim
