// What can stand next on a command line, for the completion of shells.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

struct Candidates {
    std::vector<std::string> words;
    bool files = false;  // or the name of a file
};

// `words`: those behind the program's name, the last one as far as it is typed, which may be empty.
Candidates candidates(const CLI::App& program, const std::vector<std::string>& words);
