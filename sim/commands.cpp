#include "sim/commands.h"

#include "sim/changerequests.h"
#include "sim/dump.h"
#include "sim/fieldtext.h"
#include "sim/place.h"
#include "sim/show.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <fmt/format.h>

namespace sim {

namespace {

using Words = std::span<const std::string>;

CommandReply refuse(std::string reason) {
    return {false, false, std::move(reason)};
}

CommandReply showTime(Commands& c) {
    return {true, false,
            fmt::format("{:.3f} s, {}\n", static_cast<double>(c.state.now()) / 1000,
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
        return refuse("clock takes nothing, freeze, run or step SECONDS");
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
    return {true, false, fieldText(reader.chosen(), currentBytes(c.state, reader.place())) + "\n"};
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
    if (c.state.forced.erase(reader.place()) == 0) return refuse("that field is not set");
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

std::optional<std::int64_t> errorNumber(const std::string& word) {
    if (const auto number = wholeNumber(word)) return *number >= 1 && *number <= 4095 ? number : std::nullopt;
    constexpr int lastError = 133;  // the highest that this host names
    for (int error = 1; error <= lastError; ++error)
        if (const char* name = ::strerrorname_np(error); name && word == name) return error;
    return std::nullopt;
}

std::optional<std::int64_t> damageArg(Damage damage, const std::string& word) {
    if (damage == Damage::Errno) return errorNumber(word);
    if (damage == Damage::Malformed) {
        const auto words = malformWords();
        const auto found = std::find(words.begin(), words.end(), word);
        return found == words.end() ? std::nullopt : std::optional<std::int64_t>(found - words.begin());
    }
    const std::int64_t most = damage == Damage::Late ? 3'600'000 : 65535;  // an hour; 16 bits
    const auto number = wholeNumber(word);
    return number && *number >= 0 && *number <= most ? number : std::nullopt;
}

CommandReply fault(Commands& c, Words words) {
    if (!words.empty() && words[0] == "clear" && words.size() <= 2) {
        if (words.size() == 1) return c.faults.clear(), CommandReply{};
        const auto id = wholeNumber(words[1]);
        if (!id || !c.faults.remove(static_cast<int>(*id)))
            return refuse(fmt::format("no fault {}", words[1]));
        return {};
    }
    if (words.empty()) {
        CommandReply reply;
        for (const Fault& one : c.faults.all()) reply.text += one.text() + "\n";
        return reply;
    }
    Fault added;
    added.kind = words[0];
    if (!Faults::knownKind(added.kind))
        return refuse(
            fmt::format("no request \"{}\": any, open, or one that \"ctl requests\" lists", words[0]));
    words = words.subspan(1);
    if (!words.empty() && words[0] == "every")
        words = words.subspan(1);
    else if (words.size() >= 2 && words[0] == "nth") {
        const auto nth = wholeNumber(words[1]);
        if (!nth || *nth < 1) return refuse(fmt::format("nth takes a number from 1, not \"{}\"", words[1]));
        added.nth = static_cast<unsigned>(*nth);
        words = words.subspan(2);
    } else
        return refuse("after the request comes \"every\" or \"nth N\"");
    const auto known = damageWords();
    const auto damage = std::find_if(known.begin(), known.end(), [&](const DamageWord& w) {
        return !words.empty() && w.word == words[0];
    });
    if (damage == known.end()) return refuse("no such fault; see \"ctl help fault\"");
    added.damage = damage->damage;
    if (words.size() != (damage->takesArg ? 2u : 1u))
        return refuse(fmt::format("{} takes {}", damage->word, damage->takesArg ? "one value" : "no value"));
    if (damage->takesArg) {
        const auto arg = damageArg(damage->damage, words[1]);
        if (!arg) return refuse(fmt::format("{} does not take \"{}\"", damage->word, words[1]));
        added.arg = static_cast<std::int32_t>(*arg);
    }
    return {true, false, fmt::format("{}\n", c.faults.add(added))};
}

CommandReply log(Commands& c, Words words) {
    constexpr std::size_t usual = 20;  // a screenful
    if (words.size() == 1 && words[0] == "clear") return c.log.clear(), CommandReply{};
    const bool hex = !words.empty() && words[0] == "hex";
    if (hex) words = words.subspan(1);
    if (words.empty()) return {true, false, c.log.text(usual, hex)};
    if (words[0] == "all" && words.size() == 1) return {true, false, c.log.text(RequestLog::capacity, hex)};
    const auto count = wholeNumber(words[0]);
    if (words.size() > 1 || !count || *count < 0)
        return refuse("log takes nothing, a number, all, hex [N|all] or clear");
    return {true, false, c.log.text(static_cast<std::size_t>(*count), hex)};
}

CommandReply show(Commands& c, Words words) {
    if (words.empty()) return {true, false, showAll(c.state)};
    PlaceReader reader(c.state, words);
    if (!reader.target() || !reader.instance()) return refuse(reader.error);
    if (!reader.rest().empty()) return refuse(fmt::format("\"{}\" is one word too many", reader.rest()[0]));
    return {true, false, showInstance(c.state, reader.targetName, reader.where)};
}

CommandReply dump(Commands& c, Words words) {
    if (words.empty()) return {true, false, dumpConfig(c.state) + dumpState(c.state)};
    if (words[0] != "config") return refuse("dump takes nothing or config");
    return {true, false, dumpConfig(c.state)};
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
    return {true, false, showFields()};
}
CommandReply quit(Commands&, Words) {
    return {true, true, {}};
}
CommandReply help(Commands&, Words words) {
    std::string text = commandHelp(words.empty() ? std::string_view{} : words[0]);
    return text.empty() ? refuse(fmt::format("no command \"{}\"", words[0]))
                        : CommandReply{true, false, std::move(text)};
}

struct Command {
    std::string_view name;
    std::string_view usage;
    std::string_view what;
    std::size_t most;  // words it takes
    CommandReply (*run)(Commands&, Words);
};

constexpr Command commands[] = {
    {"show", "[TARGET [PLACE]]",
     "the state as text: all adapters in short, or every field and row of one instance", 2, show},
    {"dump", "[config]",
     "the whole state, a value in a line; or only what the files can hold, to compare two simulators", 1,
     dump},
    {"get", "TARGET [PLACE] [row N] FIELD", "one field", 5, get},
    {"set", "TARGET [PLACE] [row N] FIELD VALUE", "force a field until it is unset: set lec 1.2 state 6", 6,
     set},
    {"unset", "[TARGET [PLACE] [row N] FIELD]",
     "let one field, or with no words everything forced, follow the state again", 5, unset},
    {"fields", "", "all targets and their fields", 0, fields},
    {"rows", "TARGET [PLACE] N|auto", "force the number of rows of a table: rows lec 1.1 14", 3, rows},
    {"alarm", "ADAPTER NAME on|off", "los, lof, oof, ferf, ais, lop; link is that of a 25 Mbit/s link", 3,
     alarm},
    {"link", "ADAPTER KIND", "25 (Mbit/s), mm, sm (OC3c) or utp (155 Mbit/s)", 2, link},
    {"clock", "[freeze|run|step SECONDS]", "show, stop, start or advance the simulated clock", 2, clock},
    {"fault", "[REQUEST every|nth N WHAT [ARG] | clear [ID]]",
     "make requests go wrong; alone: the faults that are set", 6, fault},
    {"requests", "", "the names of all requests", 0, listRequests},
    {"log", "[hex] [N|all] | clear", "the last requests seen (20); hex adds their input bytes", 2, log},
    {"help", "[COMMAND]", "this text", 1, help},
    {"quit", "", "end the simulator", 0, quit},
};

}  // namespace

std::string commandHelp(std::string_view name) {
    std::string text;
    for (const Command& command : commands) {
        if (!name.empty() && name != command.name) continue;
        text += fmt::format("  {}{}{}\n        {}\n", command.name, command.usage.empty() ? "" : " ",
                            command.usage, command.what);
        if (command.name != "fault" || name.empty()) continue;
        text += "\n  REQUEST is any, open, a target (lec) or a request (lec.state; \"ctl requests\" lists "
                "them).\n"
                "  every strikes until cleared, nth N once, at the N-th request from now. WHAT is one of\n";
        for (const DamageWord& word : damageWords())
            text += fmt::format("    {:<14}{}\n", fmt::format("{}{}", word.word, word.takesArg ? " ARG" : ""),
                                word.help);
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
    if (words.empty() || words[0].empty()) return refuse("a command is missing; see \"ctl help\"");
    for (const Command& command : commands) {
        if (command.name != words[0]) continue;
        const Words rest = Words(words).subspan(1);
        if (rest.size() > command.most)
            return refuse(fmt::format("too many words: {} {}", command.name, command.usage));
        return command.run(*this, rest);
    }
    return refuse(fmt::format("no command \"{}\"; see \"ctl help\"", words[0]));
}

}  // namespace sim
