#include "ctl/command.h"

#include <fmt/format.h>

namespace {

// Well below the time from one run to the next: a silent driver is soon told of as that.
constexpr double patienceOfMetrics = 5;

constexpr Command rows[] = {
    {"show", "The configuration in the files, or what the driver reports", addShow},
    {"watch", "What the driver reports, again and again", addWatch},
    {"metrics", "What Prometheus collects, as its text format", addMetrics, patienceOfMetrics, true},
    {"get", "One value of the configuration in the files, or one list", addGet},
    {"diff", "What differs between files, driver, past changes and documents", addDiff},
    {"set", "Change settings, as the fields and OK of a window would", addSet},
    {"pvc", "Add, modify or delete PVCs of a client", addPvc},
    {"client", "Add, delete or move the clients of a LES", addClient},
    {"apply", "Make the configuration that of a document", addApply},
    {"confirm", "Keep the change that would be taken back", addConfirm},
    {"history", "The changes so far, newest first", addHistory},
    {"revert", "Undo a change and all later ones", addRevert},
    {"check", "What is wrong in the configuration", addCheck},
    {"init", "Write the parameter file of a first start", addInit},
    {"trace", "Switch one of the driver's own traces", addTrace},
    {"help", "What there is, and what a command takes", addHelp},
    {"completion", "What bash needs to complete the words of tvctl", addCompletion},
    {"version", "The version of this program", addVersion},
};

}  // namespace

std::span<const Command> commands() {
    return rows;
}

CLI::Validator secondsFrom(double least) {
    const auto check = [least](const std::string& text) {
        constexpr double day = 86400;
        double seconds = 0;
        const bool good = CLI::detail::lexical_cast(text, seconds) && seconds >= least && seconds <= day;
        return good ? "" : fmt::format("{} is no number of seconds from {} to {}", text, least, day);
    };
    return {check, "SECONDS"};
}
