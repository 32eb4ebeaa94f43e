// The application's main routine.
#pragma once

#include <string>
#include <vector>

// `commandLine`: the arguments after the program name. Returns the exit status.
int runApplication(const std::string& programName, const std::vector<std::string>& commandLine);

// Does what the tool's own options in the command line say.
void takeOptions(const std::string& commandLine);

// The text stands anywhere in the whole, letters of either case alike. `text` is in upper case.
bool holdsOption(const std::string& commandLine, const std::string& text);
