#include "ctl/program.h"
#include "platform/linewriter.h"

#include <csignal>
#include <cstdio>
#include <exception>

int main(int argc, char** argv) {
    platform::openStandardDescriptors();
    // A reader that is gone, and a file that may not grow, are failures to write.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    try {
        return runProgram({argv + (argc > 0 ? 1 : 0), argv + argc});
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "tvctl: %s\n", failure.what());
        return 5;
    }
}
