#include "sim/commands.h"

#include "sim/changerequests.h"
#include "sim/dump.h"
#include "sim/faultcommand.h"
#include "sim/fieldtext.h"
#include "sim/place.h"
#include "sim/show.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <fmt/format.h>
#include <numeric>
#include <utility>

namespace sim {

namespace {

using Words = std::span<const std::string>;

CommandReply refuse(std::string_view reason) {
    return CommandReply::misuse(reason);
}

CommandReply showTime(Commands& c) {
    return {.text = fmt::format("{:.3f} s, {}\n", static_cast<double>(c.state.now()) / 1000,
                                c.state.clock().running() ? "running" : "frozen")};
}

CommandReply clock(Commands& c, Words words) {
    Clock& clock = c.state.clock();
    if (words.empty()) return showTime(c);
    if (words[0] == "freeze" && words.size() == 1)
        clock.freeze();
    else if (words[0] == "run" && words.size() == 1)
        clock.run();
    else if (words[0] == "step" && words.size() == 2) {
        // Ten years: far beyond any wrap-around, and no number of milliseconds overflows.
        constexpr double most = 10 * 365 * 86400.0;
        char* end = nullptr;
        const double seconds = std::strtod(words[1].c_str(), &end);
        if (words[1].empty() || *end || !(seconds >= 0 && seconds <= most))
            return refuse(fmt::format("\"{}\" is no number of seconds from 0 to {:.0f}", words[1], most));
        clock.step(std::llround(seconds * 1000));
    } else
        return refuse(fmt::format("clock takes nothing, freeze, run or step SECONDS, not \"{}\"", words[0]));
    c.state.tick();
    return showTime(c);
}

CommandReply set(Commands& c, Words words) {
    PlaceReader reader(c.state, words);
    if (!reader.target() || !reader.instance() || !reader.row() || !reader.field())
        return refuse(reader.error);
    if (reader.rest().size() != 1) return refuse("exactly one value is needed (quote a text with blanks)");
    auto bytes = fieldBytes(reader.chosen(), reader.rest()[0]);
    if (!bytes)
        return refuse(fmt::format("\"{}\" does not fit {}: {}, {} bytes", reader.rest()[0],
                                  reader.chosen().name, kindText(reader.chosen().kind),
                                  reader.chosen().width));
    c.state.forced[reader.place()] = std::move(*bytes);
    return {};
}

CommandReply get(Commands& c, Words words) {
    PlaceReader reader(c.state, words);
    if (!reader.target() || !reader.instance() || !reader.row() || !reader.field())
        return refuse(reader.error);
    if (!reader.rest().empty()) return refuse(fmt::format("\"{}\" is one word too many", reader.rest()[0]));
    return {.text = fieldText(reader.chosen(), currentBytes(c.state, reader.place())) + "\n"};
}

CommandReply unset(Commands& c, Words words) {
    if (words.empty()) {
        c.state.forced.clear();
        c.state.forcedRows.clear();
        return {};
    }
    PlaceReader reader(c.state, words);
    if (!reader.target() || !reader.instance() || !reader.row() || !reader.field())
        return refuse(reader.error);
    if (!reader.rest().empty()) return refuse(fmt::format("\"{}\" is one word too many", reader.rest()[0]));
    if (c.state.forced.erase(reader.place()) == 0) return CommandReply::refusal("that field is not set");
    return {};
}

// Shorthands for fields of the physical layer.
CommandReply setField(Commands& c, const std::string& adapter, const std::string& field,
                      const std::string& value) {
    const std::vector<std::string> words{"adapter", adapter, field, value};
    return set(c, words);
}

CommandReply alarm(Commands& c, Words words) {
    static constexpr std::string_view names[] = {"los", "lof", "oof", "ferf", "ais", "lop", "link"};
    if (words.size() != 3 || (words[2] != "on" && words[2] != "off") ||
        std::find(std::begin(names), std::end(names), words[1]) == std::end(names))
        return refuse(fmt::format("alarm takes ADAPTER, one of {}, and on or off", fmt::join(names, ", ")));
    return setField(c, words[0], words[1] == "link" ? "linkAlarm" : words[1], words[2] == "on" ? "1" : "0");
}

CommandReply link(Commands& c, Words words) {
    static constexpr std::string_view kinds[] = {"25", "mm", "sm",
                                                 "utp"};  // in the order of the codes, from 1
    const auto kind =
        words.size() == 2 ? std::find(std::begin(kinds), std::end(kinds), words[1]) : std::end(kinds);
    if (kind == std::end(kinds))
        return refuse(fmt::format("link takes ADAPTER and one of {}", fmt::join(kinds, ", ")));
    const auto code = kind - std::begin(kinds) + 1;
    // A 25 Mbit/s link has no SONET framer and so no valid SONET statistics.
    CommandReply reply = setField(c, words[0], "valid", code == 1 ? "0" : "1");
    return reply.ok ? setField(c, words[0], "link", fmt::format("{}", code)) : reply;
}

CommandReply rows(Commands& c, Words words) {
    PlaceReader reader(c.state, words);
    if (!reader.target() || !reader.instance()) return refuse(reader.error);
    const auto table = std::find_if(requests().begin(), requests().end(), [&](const Request& r) {
        return r.target == reader.targetName && r.shape == Shape::Table;
    });
    if (table == requests().end()) return refuse(fmt::format("{} has no table", reader.targetName));
    const std::tuple key{table->id, reader.where.adapter, reader.where.unit};
    const bool natural = reader.rest().size() == 1 && reader.rest()[0] == "auto";
    const auto count = reader.rest().size() == 1 ? wholeNumber(reader.rest()[0]) : std::nullopt;
    if (natural)
        c.state.forcedRows.erase(key);
    else if (count && *count >= 0 && *count <= 65535)
        c.state.forcedRows[key] = static_cast<std::size_t>(*count);
    else
        return refuse("rows takes a number from 0 to 65535, or auto");
    return {};
}

CommandReply fault(Commands& c, Words words) {
    return faultCommand(c.faults, words);
}

CommandReply log(Commands& c, Words words) {
    constexpr std::size_t usual = 20;  // a screenful
    if (words.size() == 1 && words[0] == "clear") return c.log.clear(), CommandReply{};
    const bool hex = !words.empty() && words[0] == "hex";
    if (hex) words = words.subspan(1);
    if (words.empty()) return {.text = c.log.text(usual, hex)};
    if (words[0] == "all" && words.size() == 1) return {.text = c.log.text(RequestLog::capacity, hex)};
    const auto count = wholeNumber(words[0]);
    if (words.size() > 1 || !count || *count < 0)
        return refuse("log takes nothing, a number, all, hex [N|all] or clear");
    return {.text = c.log.text(static_cast<std::size_t>(*count), hex)};
}

CommandReply show(Commands& c, Words words) {
    if (words.empty()) return {.text = showAll(c.state)};
    PlaceReader reader(c.state, words);
    if (!reader.target() || !reader.instance()) return refuse(reader.error);
    if (!reader.rest().empty()) return refuse(fmt::format("\"{}\" is one word too many", reader.rest()[0]));
    return {.text = showInstance(c.state, reader.targetName, reader.where)};
}

CommandReply dump(Commands& c, Words words) {
    if (words.empty()) return {.text = dumpConfig(c.state) + dumpState(c.state)};
    if (words[0] != "config") return refuse("dump takes nothing or config");
    return {.text = dumpConfig(c.state)};
}

CommandReply listRequests(Commands&, Words) {
    CommandReply reply;
    for (const Request& r : requests())
        reply.text += fmt::format("{:<16} Prim {:>3} Type {}\n", r.name, r.prim,
                                  r.type == anyType ? "any" : fmt::format("{}", r.type));
    for (const ChangeRequest& r : changeRequests())
        reply.text += fmt::format("{:<16} Prim {:>3} Type {}\n", r.name, request(r.service).prim, r.type);
    return reply;
}

CommandReply fields(Commands&, Words) {
    return {.text = showFields()};
}
CommandReply quit(Commands&, Words) {
    return {.quit = true};
}
CommandReply help(Commands&, Words words) {
    std::string text = commandHelp(words.empty() ? std::string_view{} : words[0]);
    return text.empty() ? refuse(fmt::format("no command \"{}\"", words[0]))
                        : CommandReply{.text = std::move(text)};
}

struct Command {
    std::string_view name;
    std::string_view usage;
    std::string_view example;
    std::string_view what;
    std::size_t most;  // words it takes
    CommandReply (*run)(Commands&, Words);
};

constexpr Command commands[] = {
    {"show", "[TARGET [PLACE]]", "show lec 1.2",
     "the state as text: all adapters in short, or every field and row of one instance", 2, show},
    {"dump", "[config]", "dump config",
     "the whole state, a value in a line; or only what the files can hold, to compare two simulators", 1,
     dump},
    {"get", "TARGET [PLACE] [row N] FIELD", "get lec 1.2 state", "one field", 5, get},
    {"set", "TARGET [PLACE] [row N] FIELD VALUE", "set lec 1.2 state 6",
     "force a field until it is unset; a text with blanks is quoted", 6, set},
    {"unset", "[TARGET [PLACE] [row N] FIELD]", "unset lec 1.2 state",
     "let one field, or with no words everything forced, follow the state again", 5, unset},
    {"fields", "", "", "all targets and their fields", 0, fields},
    {"rows", "TARGET [PLACE] N|auto", "rows lec 1.1 14", "force the number of rows of a table", 3, rows},
    {"alarm", "ADAPTER NAME on|off", "alarm 1 los on",
     "los, lof, oof, ferf, ais, lop; link is that of a 25 Mbit/s link", 3, alarm},
    {"link", "ADAPTER KIND", "link 1 sm", "25 (Mbit/s), mm, sm (OC3c) or utp (155 Mbit/s)", 2, link},
    {"clock", "[freeze|run|step SECONDS]", "clock step 60",
     "show, stop, start or advance the simulated clock", 2, clock},
    {"fault", "[REQUEST every|nth N WHAT [ARG] | clear [ID]]", "fault lec.state every resp 5",
     "make requests go wrong; alone: the faults that are set", 6, fault},
    {"requests", "", "", "the names of all requests", 0, listRequests},
    {"log", "[hex] [N|all] | clear", "log hex 5", "the last requests seen (20); hex adds their input bytes",
     2, log},
    {"help", "[COMMAND]", "help fault", "this text", 1, help},
    {"quit", "", "", "end the simulator", 0, quit},
};

std::string usageOf(const Command& command) {
    return fmt::format("{}{}{}", command.name, command.usage.empty() ? "" : " ", command.usage);
}

std::string formOf(const Command& command) {
    return command.example.empty() ? usageOf(command)
                                   : fmt::format("{}; for example: {}", usageOf(command), command.example);
}

// Words of a command that stand in the first place when the command was forgotten.
constexpr std::pair<std::string_view, std::string_view> forgotten[] = {
    {"every", "fault"}, {"nth", "fault"},   {"clear", "fault"}, {"freeze", "clock"}, {"run", "clock"},
    {"step", "clock"},  {"time", "clock"},  {"los", "alarm"},   {"lof", "alarm"},    {"oof", "alarm"},
    {"ferf", "alarm"},  {"ais", "alarm"},   {"lop", "alarm"},   {"config", "dump"},  {"stop", "quit"},
    {"driver", "set"},  {"adapter", "set"}, {"lec", "set"},     {"les", "set"},      {"lecs", "set"},
    {"sig", "set"},     {"vc", "set"},      {"ip", "set"},      {"ip.pvc", "set"},   {"exit", "quit"},
};

// How many letters have to be added, left out or replaced.
std::size_t difference(std::string_view a, std::string_view b) {
    std::vector<std::size_t> line(b.size() + 1);
    std::iota(line.begin(), line.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t before = std::exchange(line[0], i + 1);
        for (std::size_t j = 0; j < b.size(); ++j) {
            const std::size_t same = before + (a[i] != b[j]);
            before = line[j + 1];
            line[j + 1] = std::min({same, before + 1, line[j] + 1});
        }
    }
    return line.back();
}

// The command that was meant, or null.
const Command* meant(std::string word) {
    std::transform(word.begin(), word.end(), word.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    std::string_view name = word;
    for (const auto& [first, of] : forgotten)
        if (first == word) name = of;
    for (const DamageWord& damage : damageWords())
        if (damage.word == word) name = "fault";
    const auto nearest =
        std::min_element(std::begin(commands), std::end(commands), [&](const Command& a, const Command& b) {
            return difference(name, a.name) < difference(name, b.name);
        });
    const std::size_t most =
        nearest->name.size() > 4 ? 2 : 1;  // of short names, two letters make another word
    return difference(name, nearest->name) <= most ? nearest : nullptr;
}

}  // namespace

std::string commandForm(const std::string& word) {
    const Command* command = meant(word);
    return command ? formOf(*command) : std::string();
}

std::string commandHelp(std::string_view name) {
    std::string text;
    for (const Command& command : commands) {
        if (!name.empty() && name != command.name) continue;
        text += fmt::format("  {}\n        {}\n", usageOf(command), command.what);
        if (!command.example.empty()) text += fmt::format("        for example: {}\n", command.example);
        if (command.name == "fault" && !name.empty()) text += faultHelp();
    }
    if (!text.empty() && name.empty())
        text = "tvsim ctl COMMAND ... talks to the running simulator of the same root directory.\n\n" + text +
               "\nTARGET is driver, adapter, lec, les, lecs, sig, vc, ip or ip.pvc. PLACE is "
               "ADAPTER.INSTANCE for lec\n"
               "and les, ADAPTER for the others, nothing for driver. All count from 1, rows too.\n";
    return text;
}

CommandReply Commands::run(const std::vector<std::string>& words) {
    state.tick();
    if (words.empty() || words[0].empty())
        return CommandReply::refusal("a command is missing; see \"ctl help\"");
    for (const Command& command : commands) {
        if (command.name != words[0]) continue;
        const Words rest = Words(words).subspan(1);
        CommandReply reply = rest.size() > command.most ? refuse("too many words") : command.run(*this, rest);
        if (reply.misused) reply.text += "; the form is: " + formOf(command);
        return reply;
    }
    const Command* command = meant(words[0].substr(0, words[0].find(' ')));  // also of a whole line in quotes
    return CommandReply::refusal(
        fmt::format("no command \"{}\"; {}", words[0],
                    command ? "the form is: " + formOf(*command) : "see \"ctl help\""));
}

}  // namespace sim
