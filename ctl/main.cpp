#include "ctl/program.h"
#include "platform/linewriter.h"

#include <csignal>
#include <cstdio>
#include <exception>

int main(int argc, char** argv) {
    platform::openStandardDescriptors();
    std::signal(SIGPIPE, SIG_IGN);  // a reader that is gone is a failure to write
    try {
        return runProgram({argv + (argc > 0 ? 1 : 0), argv + argc});
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "tvctl: %s\n", failure.what());
        return 5;
    }
}
