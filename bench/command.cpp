// bench_command PAIRS PROGRAM [WORD...] -- FLOOR [WORD...]: runs two commands in turn, from fork to exit,
// without what they print. Prints the milliseconds and the peak of resident memory of each, as medians, with
// the median of the ratios pair by pair. A command that fails ends the measurement.
#include "bench/pairs.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

struct Run {
    double milliseconds, kilobytes;
};

Run run(char** words) {
    const double begin = milliseconds();
    const pid_t process = ::fork();
    if (process == 0) {
        ::dup2(::open("/dev/null", O_WRONLY | O_CLOEXEC), STDOUT_FILENO);
        ::execvp(words[0], words);
        ::_exit(127);
    }
    int status = 0;
    rusage used{};
    ::wait4(process, &status, 0, &used);
    if (status != 0) {
        fmt::print(stderr, "bench_command: {} failed\n", words[0]);
        std::exit(EXIT_FAILURE);
    }
    return {milliseconds() - begin, static_cast<double>(used.ru_maxrss)};
}

}  // namespace

int main(int argc, char** argv) {
    const auto isEnd = [](const char* word) { return std::strcmp(word, "--") == 0; };
    char** const end = argv + argc;
    char** const between = std::find_if(std::min(argv + 2, end), end, isEnd);
    const int count = argc > 1 ? std::atoi(argv[1]) : 0;
    if (count < 1 || between == argv + 2 || end - between < 2) {
        fmt::print(stderr, "usage: bench_command PAIRS PROGRAM [WORD...] -- FLOOR [WORD...]\n");
        return 2;
    }
    *between = nullptr;
    Pairs times, memory;
    for (int pair = -1; pair < count; ++pair) {
        const Run figure = run(argv + 2), floor = run(between + 1);
        if (pair < 0) continue;  // the first pair warms the caches
        times.add(figure.milliseconds, floor.milliseconds);
        memory.add(figure.kilobytes, floor.kilobytes);
    }
    times.print("milliseconds");
    memory.print("kilobytes");
}
