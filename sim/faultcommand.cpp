#include "sim/faultcommand.h"

#include "sim/fieldtext.h"

#include <algorithm>
#include <cstring>
#include <fmt/format.h>

namespace sim {

namespace {

using Words = std::span<const std::string>;

CommandReply misused(std::string_view reason) {
    return CommandReply::misuse(reason);
}

std::optional<std::int64_t> errorNumber(const std::string& word) {
    if (const auto number = wholeNumber(word)) return *number >= 1 && *number <= 4095 ? number : std::nullopt;
    constexpr int lastError = 133;  // the highest that this host names
    for (int error = 1; error <= lastError; ++error)
        if (const char* name = ::strerrorname_np(error); name && word == name) return error;
    return std::nullopt;
}

std::optional<std::int64_t> damageArg(const DamageWord& damage, const std::string& word) {
    if (damage.damage == Damage::Errno) return errorNumber(word);
    if (damage.damage == Damage::Malformed) {
        const auto words = malformWords();
        const auto found = std::find(words.begin(), words.end(), word);
        return found == words.end() ? std::nullopt : std::optional<std::int64_t>(found - words.begin());
    }
    const auto number = wholeNumber(word);
    return number && *number >= 0 && *number <= damage.most ? number : std::nullopt;
}

CommandReply clear(Faults& faults, Words words) {
    if (words.empty()) return faults.clear(), CommandReply{};
    const auto id = wholeNumber(words[0]);
    if (id && faults.remove(static_cast<int>(*id))) return {};
    const std::string reason = fmt::format("no fault {}", id ? words[0] : fmt::format("\"{}\"", words[0]));
    return id ? CommandReply::refusal(reason) : misused(reason);
}

const DamageWord* damageNamed(std::string_view word) {
    const auto known = damageWords();
    const auto found =
        std::find_if(known.begin(), known.end(), [&](const DamageWord& w) { return w.word == word; });
    return found == known.end() ? nullptr : &*found;
}

std::string allDamages() {
    std::string text;
    for (const DamageWord& word : damageWords())
        text += fmt::format("{}{}", text.empty() ? "" : ", ", word.word);
    return text;
}

// What goes wrong, and the value that it takes. An empty text, or why not.
std::string readDamage(Words words, Fault& fault) {
    if (words.empty()) return "what goes wrong is missing: one of " + allDamages();
    const DamageWord* damage = damageNamed(words[0]);
    if (!damage) return fmt::format("nothing goes wrong like \"{}\": one of {}", words[0], allDamages());
    fault.damage = damage->damage;
    if (words.size() != (damage->arg.empty() ? 1u : 2u))
        return damage->arg.empty() ? fmt::format("{} takes no value", damage->word)
                                   : fmt::format("{} takes one value: {}", damage->word, damage->arg);
    if (damage->arg.empty()) return {};
    const auto arg = damageArg(*damage, words[1]);
    if (!arg) return fmt::format("{} does not take \"{}\": {}", damage->word, words[1], damage->arg);
    fault.arg = static_cast<std::int32_t>(*arg);
    return {};
}

}  // namespace

CommandReply faultCommand(Faults& faults, Words words) {
    if (words.empty()) {
        CommandReply reply;
        for (const Fault& one : faults.all()) reply.text += one.text() + "\n";
        return reply;
    }
    if (words[0] == "clear" && words.size() <= 2) return clear(faults, words.subspan(1));
    Fault added;
    added.kind = words[0];
    if (!Faults::knownKind(added.kind)) {
        const bool later = words[0] == "every" || words[0] == "nth" || damageNamed(words[0]);
        return misused(later ? fmt::format("the request comes first, in front of \"{}\"", words[0])
                             : fmt::format("no request \"{}\": any, open, or one that \"ctl requests\" lists",
                                           words[0]));
    }
    const std::string when = words.size() > 1 ? words[1] : "";
    if (when != "every" && when != "nth")
        return misused(fmt::format("after the request comes \"every\" or \"nth N\"{}",
                                   when.empty() ? "" : fmt::format(", not \"{}\"", when)));
    words = words.subspan(2);
    if (when == "every" && !words.empty() && wholeNumber(words[0]))
        return misused("every takes no number: it strikes until cleared, nth N strikes once");
    if (when == "nth") {
        const auto nth = words.empty() ? std::nullopt : wholeNumber(words[0]);
        if (!nth || *nth < 1)
            return misused(fmt::format("nth takes a number from 1{}",
                                       words.empty() ? "" : fmt::format(", not \"{}\"", words[0])));
        added.nth = static_cast<unsigned>(*nth);
        words = words.subspan(1);
    }
    if (std::string reason = readDamage(words, added); !reason.empty()) return misused(reason);
    return {.text = fmt::format("{}\n", faults.add(added))};
}

std::string faultHelp() {
    std::string text =
        "\n  REQUEST is any, open, a target (lec) or a request (lec.state; \"ctl requests\" lists "
        "them).\n"
        "  every strikes until cleared, nth N once, at the N-th request from now. WHAT is one of\n";
    for (const DamageWord& word : damageWords())
        text +=
            fmt::format("    {:<14}{}{}\n", fmt::format("{}{}", word.word, word.arg.empty() ? "" : " ARG"),
                        word.help, word.arg.empty() ? "" : fmt::format("; ARG is {}", word.arg));
    return text;
}

}  // namespace sim
