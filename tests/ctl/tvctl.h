// Runs the command line program below the present root directory.
#pragma once

#include "platform/root.h"

#include <cstdio>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <sys/wait.h>

struct Said {
    int status;
    std::string out, err;
};

// `words` as a shell takes them, `behind` another program with its words, which runs this one.
inline Said tvctl(const std::string& words, const std::string& behind = {}) {
    const std::string errors = platform::hostPath("/complaints").text;
    std::FILE* const output = ::popen((behind + " " TVCTL_PROGRAM " " + words + " 2>" + errors).c_str(), "r");
    if (!output) throw std::runtime_error("no pipe");
    Said said;
    char part[65536];
    for (std::size_t length; (length = std::fread(part, 1, sizeof part, output)) > 0;)
        said.out.append(part, length);
    said.status = WEXITSTATUS(::pclose(output));
    std::ifstream file(errors);
    said.err.assign(std::istreambuf_iterator<char>(file), {});
    return said;
}
