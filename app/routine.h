// The main routine of the application.
#pragma once

#include <string>
#include <vector>

// `command`: the program as it was called. `arguments`: those after it. Returns the exit status.
int runApplication(const std::string& command, const std::vector<std::string>& arguments);

// Evaluates the tool's own options, -debug and -adv.
void takeOptions(const std::string& commandLine);

// True if the command line contains `text` anywhere, ignoring case. `text` must be in upper case.
bool holdsOption(const std::string& commandLine, const std::string& text);
