// bench_mapped PAIRS PROGRAM FLOOR [LINK]: starts the two programs in turn, on the display LINK if there is
// one, which leads to that of DISPLAY, and waits for the first window of each.
// Prints the milliseconds from exec to the window and the resident memory of each, as medians, with the
// median of the ratios pair by pair.
#include <X11/Xlib.h>
#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <fmt/core.h>
#include <fstream>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

struct Start {
    double milliseconds = 0, kilobytes = 0;
};

double residentKilobytes(pid_t process) {
    std::ifstream status(fmt::format("/proc/{}/status", process));
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("VmRSS:")) return std::strtod(line.c_str() + 6, nullptr);
    return 0;
}

Start measure(Display* display, const char* program, const char* link) {
    const Clock::time_point begin = Clock::now();
    const pid_t process = ::fork();
    if (process == 0) {
        const int nowhere = ::open("/dev/null", O_WRONLY);
        ::dup2(nowhere, 1);
        ::dup2(nowhere, 2);
        if (link) ::setenv("DISPLAY", link, 1);
        ::execl(program, program, nullptr);
        ::_exit(127);
    }
    XEvent event;
    do XNextEvent(display, &event);
    while (event.type != MapNotify || event.xmap.override_redirect);
    Start start;
    start.milliseconds = std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
    std::this_thread::sleep_for(std::chrono::milliseconds(300));  // drawn and idle
    start.kilobytes = residentKilobytes(process);
    ::kill(process, SIGTERM);
    ::waitpid(process, nullptr, 0);
    XSync(display, True);
    return start;
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

void report(const char* what, const std::vector<double>& program, const std::vector<double>& floor) {
    std::vector<double> ratios;
    for (std::size_t i = 0; i < program.size(); ++i) ratios.push_back(program[i] / floor[i]);
    fmt::print("{} {:.1f} {:.1f} {:.2f}\n", what, median(program), median(floor), median(ratios));
}

}  // namespace

int main(int argc, char** argv) {
    Display* display = argc == 4 || argc == 5 ? XOpenDisplay(nullptr) : nullptr;
    if (!display) {
        fmt::print(stderr, "usage: bench_mapped PAIRS PROGRAM FLOOR [LINK], with a display\n");
        return 2;
    }
    XSelectInput(display, DefaultRootWindow(display), SubstructureNotifyMask);
    std::vector<double> times[2], memory[2];
    for (int pair = -1; pair < std::atoi(argv[1]); ++pair) {
        for (int which = 0; which < 2; ++which) {
            const Start start = measure(display, argv[2 + which], argc == 5 ? argv[4] : nullptr);
            if (pair < 0) continue;  // the first pair warms the caches
            times[which].push_back(start.milliseconds);
            memory[which].push_back(start.kilobytes);
        }
    }
    report("milliseconds", times[0], times[1]);
    report("kilobytes", memory[0], memory[1]);
}
