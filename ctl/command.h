// The commands. Each has a file of its own with one function, which adds it to the command line.
#pragma once

#include "ctl/session.h"
#include "ctl/status.h"
#include "ctl/tree.h"

#include <CLI/CLI.hpp>
#include <functional>
#include <span>

// What a command has to say. With a status that is a failure `message` and `where` are the complaint.
struct Output {
    Tree tree = {};
    Status status = Status::good;
    std::string message = {};
    std::string where = {};
    std::vector<std::string> warnings = {};  // further complaints, a line each
    bool printed = false;                    // by the command itself
};

// An output as one line of JSON; `more` stands behind the number of the format.
std::string jsonLine(const Output& output, const Json& more = Json::object());

// The command that stands on the command line; throws Failure.
using Run = std::function<Output(Session&)>;

constexpr double usualPatience = 15;

struct Command {
    const char* name;
    const char* summary;  // a line of "tvctl help"
    // Adds its words and options, and returns what is done when it is given.
    Run (*add)(CLI::App& command);
    double patience = usualPatience;  // seconds to wait for the driver in all, unless others are given
    bool readOnly = false;            // see Options
};
std::span<const Command> commands();

// The check of an option that takes seconds: a number from `least` to those of a day.
CLI::Validator secondsFrom(double least);

Run addApply(CLI::App& command);
Run addShow(CLI::App& command);
Run addClient(CLI::App& command);
Run addCompletion(CLI::App& command);
Run addConfirm(CLI::App& command);
Run addPvc(CLI::App& command);
Run addDiff(CLI::App& command);
Run addGet(CLI::App& command);
Run addHelp(CLI::App& command);
Run addHistory(CLI::App& command);
Run addRevert(CLI::App& command);
Run addCheck(CLI::App& command);
Run addInit(CLI::App& command);
Run addMetrics(CLI::App& command);
Run addSet(CLI::App& command);
Run addTrace(CLI::App& command);
Run addVersion(CLI::App& command);
Run addWatch(CLI::App& command);
