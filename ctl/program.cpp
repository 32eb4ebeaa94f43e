#include "ctl/program.h"

#include "config/pdf_io.h"
#include "ctl/command.h"
#include "ctl/complete.h"
#include "platform/root.h"
#include "platform/safetext.h"

#include <algorithm>
#include <cstdlib>
#include <fmt/format.h>
#include <iterator>
#include <memory>
#include <set>

namespace {

void write(std::FILE* file, const std::string& text) {
    std::fwrite(text.data(), 1, text.size(), file);
}

void complain(const std::string& message) {
    write(stderr, fmt::format("tvctl: {}\n", message));
}

// What was given on the command line can have any length, and names of files any character.
std::string printable(const std::string& message) {
    constexpr std::size_t longest = 300;
    std::string line;
    for (const char c : std::string_view(message).substr(0, longest))
        line += c >= 0 && (c < ' ' || c == 0x7f) ? platform::escaped({&c, 1}) : std::string(1, c);
    return message.size() <= longest ? line : line + "\\...";
}

// Two printers of one tree.
void printText(const Output& output) {
    for (const std::string& line : output.tree.lines()) write(stdout, line + '\n');
}

void printJson(const Output& output) {
    write(stdout, jsonLine(output));
}

int print(const Output& output, bool json) {
    if (output.printed) return static_cast<int>(output.status);
    json ? printJson(output) : printText(output);
    // Also what stood in the buffer when the disk was full or the reader gone.
    const bool written = std::fflush(stdout) == 0 && !std::ferror(stdout);
    if (!written && output.message.empty()) complain("the output cannot be written");
    for (const std::string& warning : output.warnings) complain(printable(warning));
    if (!output.message.empty()) complain(output.message);
    if (!written && output.status == Status::good) return static_cast<int>(Status::notDone);
    return static_cast<int>(output.status);
}

Output failed(const Failure& failure) {
    return {.status = failure.status(),
            .message = printable(failure.what()),
            .where = printable(failure.where())};
}

// CLI11 takes the brackets of "[1]" for its own.
std::string shielded(const std::string& word) {
    return word.starts_with('[') && word.ends_with(']') ? ' ' + word : word;
}

// The command line of the global options and every command. The words that were given decide which `run` is
// set.
struct CommandLine {
    CLI::App app{"Configures and watches ATM adapters from a shell.", "tvctl"};
    Options options;
    std::string root;
    double timeout = 0;  // 0: not given
    const Command* chosen = nullptr;
    Run run;

    CommandLine() {
        app.option_defaults()->always_capture_default(false);
        app.add_option("--root", root, "The directory below which the system's paths are found");
        app.add_flag("--json", options.json, "One JSON document in place of text");
        app.add_option("--timeout", timeout, "Seconds to wait for the driver in all (15; metrics: 5)")
            ->check(secondsFrom(0.001));
        app.require_subcommand(1);
        app.fallthrough();  // global options may stand behind the command
        app.set_help_flag();
        for (const Command& command : commands()) {
            CLI::App* sub = app.add_subcommand(command.name, command.summary);
            sub->fallthrough();
            sub->set_help_flag();
            sub->final_callback([this, &command, does = command.add(*sub)] {
                chosen = &command;
                run = does;
            });
        }
    }

    Output parse(const std::vector<std::string>& words) {
        // CLI11 takes them from behind.
        std::vector<std::string> reversed;
        std::transform(words.rbegin(), words.rend(), std::back_inserter(reversed), shielded);
        try {
            app.parse(std::move(reversed));
        } catch (const CLI::RequiredError& error) {
            const std::string what = error.what();
            const bool command = what.find("subcommand") != what.npos;
            return {.status = Status::usage,
                    .message = command ? "there is no such command; see tvctl help" : printable(what)};
        } catch (const CLI::ParseError& error) {
            return {.status = Status::usage, .message = printable(error.what())};
        }
        options.timeout = std::chrono::duration<double>(timeout > 0 ? timeout : chosen->patience);
        options.readOnly = chosen->readOnly;
        if (!root.empty()) platform::useRootDirectory(root);
        return {};
    }
};

// "tvctl complete WORD...": not for people. Status 1: a file's name can stand there, too.
int completeWords(const CLI::App& program, const std::vector<std::string>& words) {
    const Candidates found = candidates(program, {words.begin() + 1, words.end()});
    for (const std::string& word : found.words) write(stdout, word + '\n');
    return found.files ? 1 : 0;
}

// "tvctl set --help" asks what "tvctl help set" does.
std::vector<std::string> withoutHelpOption(const std::vector<std::string>& words) {
    if (std::ranges::count(words, "--help") == 0) return words;
    std::vector<std::string> asked{"help"};
    bool named = false;
    for (auto word = words.begin(); word != words.end(); ++word) {
        if (*word == "--json") {
            asked.push_back(*word);
        } else if (*word == "--root" || *word == "--timeout") {
            if (std::next(word) != words.end()) ++word;  // its value is no command
        } else if (!named && !word->starts_with('-')) {
            asked.push_back(*word);
            named = true;
        }
    }
    return asked;
}

// Whether the answer is to be JSON also where the words are wrong.
bool asksForJson(const std::vector<std::string>& words) {
    return std::ranges::count(words, "--json") > 0;
}

}  // namespace

std::string jsonLine(const Output& output, const Json& more) {
    constexpr int format = 1;  // grows when a reader of the present one would misunderstand
    Json document{{"format", format}};
    document.update(more);
    document.update(output.tree.json());
    if (!output.message.empty()) {
        Json error{{"code", static_cast<int>(output.status)}, {"message", output.message}};
        if (!output.where.empty()) error["where"] = output.where;
        document["error"] = error;
    }
    return document.dump(-1, ' ', false, Json::error_handler_t::replace) + '\n';
}

int runProgram(const std::vector<std::string>& words) {
    // Files are read more than once.
    engineOutput = [said = std::set<std::string>()](std::string line) mutable {
        while (line.ends_with('\n')) line.pop_back();
        if (said.insert(line).second) complain(platform::escaped(line));
    };
    CommandLine line;
    if (!words.empty() && words[0] == "complete") return completeWords(line.app, words);
    if (const Output wrong = line.parse(withoutHelpOption(words)); wrong.status != Status::good)
        return print(wrong, asksForJson(words));
    try {
        Session session(line.options);
        for (const std::string& warning : session.warnings()) complain(warning);
        return print(line.run(session), line.options.json);
    } catch (const Failure& failure) {
        return print(failed(failure), line.options.json);
    }
}
