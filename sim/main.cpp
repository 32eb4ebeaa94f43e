// tvsim: stands at the driver's device and answers as the driver would.
#include "config/driverpdf.h"
#include "platform/index.h"
#include "platform/linewriter.h"
#include "sim/commandclient.h"
#include "sim/commands.h"
#include "sim/server.h"
#include "version.h"

#include <CLI/CLI.hpp>
#include <csignal>
#include <exception>
#include <fmt/core.h>
#include <sys/signalfd.h>

namespace {

struct Options {
    std::string adapters = "1-4";
    std::uint64_t seed = 1;
    bool frozen = false;
    std::vector<std::string> words;
};

// "1,3" or "1-4": the adapters that are there. Empty text on success, else the reason.
std::string parseAdapters(const std::string& text, std::array<bool, adapterCount>& present) {
    present.fill(false);
    for (std::size_t at = 0; at <= text.size();) {
        const std::size_t end = std::min(text.find(',', at), text.size());
        const std::string part = text.substr(at, end - at);
        const bool range = part.size() == 3 && part[1] == '-';
        const int from = part.empty() ? 0 : part.front() - '0', to = part.empty() ? 0 : part.back() - '0';
        if ((part.size() != 1 && !range) || from < 1 || to > adapterCount || from > to)
            return fmt::format("\"{}\" is no list of adapters from 1 to {}", text, adapterCount);
        for (int adapter = from; adapter <= to; ++adapter) present[asIndex(adapter - 1)] = true;
        at = end + 1;
    }
    return {};
}

int serve(const Options& options) {
    std::array<bool, adapterCount> present{};
    parseAdapters(options.adapters, present);

    // Blocked before anything stands, so that a signal always finds the way to the end of this function.
    sigset_t endings;
    sigemptyset(&endings);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) sigaddset(&endings, signal);
    sigprocmask(SIG_BLOCK, &endings, nullptr);
    std::signal(SIGPIPE, SIG_IGN);  // whoever waited for the ready line may be gone
    const sim::Handle stop(::signalfd(-1, &endings, SFD_CLOEXEC));

    // As the driver reads it when it is loaded: once.
    AtmDevices devices;
    if (!DriverPdfEdit(nullptr, false, devices).ReadPdf())
        fmt::print(stderr, "tvsim: without {} nothing is configured\n",
                   platform::hostPath(PdfEdit::parameterFile).text);
    sim::State state(devices, present, options.seed);
    for (const std::string& line : state.leftOut) fmt::print(stderr, "tvsim: {}\n", line);
    if (options.frozen) state.clock().startFrozen();
    sim::Server server(state);
    if (const std::string reason = server.claim(); !reason.empty()) {
        fmt::print(stderr, "tvsim: {}\n", reason);
        return 1;
    }
    fmt::print("ready {}\n", platform::hostPath(sim::devicePath).text);
    std::fflush(stdout);
    if (!server.run(stop.get())) {
        fmt::print(stderr, "tvsim: waiting for requests: {}\n", std::strerror(errno));
        return 1;
    }
    return 0;
}

int run(int argc, char** argv) {
    Options options;
    CLI::App app(
        "Simulates the ATM driver of up to four adapters: binds the device /dev/li and answers every\n"
        "request that the driver answers, with the configuration in /etc/atm/tvconf as it is at the start.\n"
        "TARVOLIN_ROOT in the environment is put in front of these paths. Prints one line, \"ready\" and\n"
        "the device's path, once it listens; ends with SIGTERM, SIGINT, SIGHUP or \"tvsim ctl quit\".",
        "tvsim");
    app.footer("\"tvsim ctl help\" lists the commands that a running simulator takes. See also tvsim(1).");
    app.add_option("--adapters", options.adapters, "The adapters that are there: 1-4, or a list such as 1,3")
        ->capture_default_str()
        ->check(CLI::Validator(
            [](std::string& text) {
                std::array<bool, adapterCount> ignored{};
                return parseAdapters(text, ignored);
            },
            "LIST"));
    app.add_option("--seed", options.seed, "Chooses traffic rates and learned peers; the same gives the same")
        ->capture_default_str();
    app.add_flag("--frozen", options.frozen,
                 "Start with the clock standing at 0; \"ctl clock step\" moves it");
    CLI::App* ctl = app.add_subcommand("ctl", "Command the running simulator: tvsim ctl help");
    ctl->set_help_flag();
    ctl->prefix_command();  // everything behind it belongs to the command, also what looks like an option
    app.set_version_flag("--version", fmt::format("tvsim {}", versionNumber), "Print the version and end");
    try {
        app.parse(argc, argv);
    } catch (const CLI::ExtrasError& reason) {
        const std::string form = sim::commandForm(app.remaining().front());
        if (form.empty()) return app.exit(reason);
        fmt::print(stderr, "tvsim: commands follow \"ctl\": tvsim ctl {}\n", form);
        return reason.get_exit_code();
    } catch (const CLI::ParseError& reason) {
        return app.exit(reason);
    }
    if (ctl->parsed()) return sim::sendCommand(ctl->remaining());
    return serve(options);
}

}  // namespace

int main(int argc, char** argv) {
    platform::openStandardDescriptors();
    try {
        return run(argc, argv);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "tvsim: %s\n", failure.what());
        return 1;
    }
}
