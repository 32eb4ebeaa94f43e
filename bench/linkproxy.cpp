// bench_linkproxy [DELAY]: a link to the X server of DISPLAY that counts round trips and takes DELAY
// milliseconds each way. Prints the display that it is. For each line on standard input it prints how many
// round trips its clients have made since the last one, and for which requests; ends with standard input.
#include "tests/support/linkproxy.h"

#include <cstdio>
#include <cstdlib>
#include <fmt/core.h>
#include <iostream>

int main(int argc, char** argv) {
    const char* server = std::getenv("DISPLAY");
    if (!server || argc > 2) {
        fmt::print(stderr, "usage: bench_linkproxy [DELAY], with a display\n");
        return 2;
    }
    LinkProxy link(server, std::chrono::milliseconds(argc == 2 ? std::atoi(argv[1]) : 0));
    fmt::print("{}\n", link.display());
    std::fflush(stdout);
    for (std::string line; std::getline(std::cin, line);) {
        int all = 0;
        std::string names;
        for (const auto& [name, count] : link.take()) {
            all += count;
            names += fmt::format(" {}:{}", name, count);
        }
        fmt::print("{}{}\n", all, names);
        std::fflush(stdout);
    }
}
