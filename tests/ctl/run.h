// A command of tvctl within the test's process, whose user can be pretended, with what it printed.
#pragma once

#include "ctl/program.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

struct Ran {
    int status;
    std::string out, err;

    nlohmann::json json() const { return nlohmann::json::parse(out); }
};

// With the words of a line, split at blanks.
inline Ran runTvctl(const std::string& line) {
    std::istringstream in(line);
    std::vector<std::string> words;
    for (std::string word; in >> word;) words.push_back(word);
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const int status = runProgram(words);
    const std::string err = testing::internal::GetCapturedStderr();
    return {status, testing::internal::GetCapturedStdout(), err};
}
