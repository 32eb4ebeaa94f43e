// tvctl from its words to its exit status.
#pragma once

#include <string>
#include <vector>

// `words` without the program's name. Results go to standard output, complaints to standard error.
int runProgram(const std::vector<std::string>& words);
