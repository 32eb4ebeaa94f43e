#include "sim/faults.h"

#include "platform/index.h"
#include "sim/changerequests.h"

#include <algorithm>
#include <fmt/core.h>

namespace sim {

namespace {

constexpr std::int64_t bits16 = 65535, hour = 3'600'000;

constexpr DamageWord words[] = {
    {"resp", Damage::Resp, "a code from 0 to 65535", bits16, "refuse with the response code ARG"},
    {"errno", Damage::Errno, "a number from 1 to 4095, or a name such as EIO", 0,
     "fail the call with errno ARG"},
    {"late", Damage::Late, "a number from 0 to 3600000", hour, "answer ARG milliseconds later (real time)"},
    {"short", Damage::Short, "a number from 0 to 65535", bits16,
     "send back only the first ARG bytes of the message"},
    {"nrow", Damage::NRow, "a number from 0 to 65535", bits16, "claim ARG rows"},
    {"dead", Damage::Dead, "", 0, "send the message back unanswered, Resp 0xDEAD"},
    {"silent", Damage::Silent, "", 0, "do not answer"},
    {"malformed", Damage::Malformed, "short, long, lie, negative or id", 0, "break the exchange"},
    {"hangup", Damage::HangUp, "", 0, "close the connection"},
};

constexpr std::string_view malforms[] = {"short", "long", "lie", "negative", "id"};

}  // namespace

std::span<const DamageWord> damageWords() {
    return words;
}
std::span<const std::string_view> malformWords() {
    return malforms;
}

std::string Fault::text() const {
    const auto& word = *std::find_if(std::begin(words), std::end(words),
                                     [&](const DamageWord& w) { return w.damage == damage; });
    std::string result = nth ? fmt::format("{} {} nth {} (seen {}) {}", id, kind, nth, seen, word.word)
                             : fmt::format("{} {} every (seen {}) {}", id, kind, seen, word.word);
    if (damage == Damage::Malformed)
        result += fmt::format(" {}", malforms[asIndex(arg)]);
    else if (!word.arg.empty())
        result += fmt::format(" {}", arg);
    return result;
}

int Faults::add(Fault fault) {
    fault.id = ++lastId_;
    faults_.push_back(std::move(fault));
    return lastId_;
}

bool Faults::remove(int id) {
    return std::erase_if(faults_, [&](const Fault& f) { return f.id == id; }) > 0;
}

std::vector<Fault> Faults::strike(std::span<const std::string_view> names) {
    std::vector<Fault> struck;
    for (Fault& fault : faults_) {
        if (fault.kind != "any" && std::find(names.begin(), names.end(), fault.kind) == names.end()) continue;
        ++fault.seen;
        if (fault.nth == 0 || fault.nth == fault.seen) struck.push_back(fault);
    }
    std::erase_if(faults_, [](const Fault& f) { return f.nth != 0 && f.seen >= f.nth; });
    return struck;
}

bool Faults::knownKind(std::string_view kind) {
    return kind == "any" || kind == "open" ||
           std::any_of(requests().begin(), requests().end(),
                       [&](const Request& r) { return r.name == kind || r.target == kind; }) ||
           std::any_of(changeRequests().begin(), changeRequests().end(),
                       [&](const ChangeRequest& r) { return r.name == kind; });
}

}  // namespace sim
