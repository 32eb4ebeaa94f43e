// pvc add, modify, delete: the PVCs of a client.
#include "ctl/entries.h"
#include "ctl/listchange.h"
#include "ctl/settings.h"
#include "platform/number.h"
#include "platform/safetext.h"

#include <algorithm>
#include <fmt/format.h>
#include <memory>

namespace {

using Words = std::vector<std::string>;

template <class Pvc>
RequestResult send(const ServiceId& service, ListEdit edit, const Pvc& pvc, DriverPhase& phase,
                   DriverChannel& channel) {
    if constexpr (std::is_same_v<Pvc, AtmBridgedPvc>)
        return sendListEdit(service.adapter, service.service - firstLec, edit, pvc, phase, channel);
    else
        return sendListEdit(service.adapter, edit, pvc, phase, channel);
}

// A step whose undoing is another edit of the same kind of entry.
template <class Pvc>
ListStep step(const ServiceId& service, ListEdit edit, const Pvc& pvc, ListEdit undo, const Pvc& undone) {
    const auto sender = [service](ListEdit what, const Pvc& entry) {
        return [=](DriverPhase& phase, DriverChannel& channel) {
            return send(service, what, entry, phase, channel);
        };
    };
    return {sender(edit, pvc), sender(undo, undone)};
}

// What a word names: an entry by its VCI, or "[1]" by its place.
struct EntryName {
    std::string word;
    bool byPlace;
    std::size_t number;
};
EntryName readEntryName(std::string word) {
    if (word.starts_with(' ')) word.erase(0, 1);  // see shielded()
    const bool byPlace = word.starts_with('[') && word.ends_with(']');
    const auto number = platform::wholeNumber<std::size_t>(
        byPlace ? std::string_view(word).substr(1, word.size() - 2) : std::string_view(word));
    if (!number)
        throw Failure(Status::usage, fmt::format("\"{}\" is no VCI and no [INDEX]", platform::escaped(word)));
    return {word, byPlace, *number};
}

template <class Pvc>
std::size_t placeOf(const std::string& text, const std::string& path, const std::vector<Pvc>& list) {
    const auto [word, byPlace, number] = readEntryName(text);
    const Failure notThere(Status::notThere,
                           byPlace ? fmt::format("there is no {}.pvcs{}", path, word)
                                   : fmt::format("{} has no PVC with VCI {}", path, word),
                           path);
    if (byPlace) {
        if (number >= list.size()) throw notThere;
        return number;
    }
    const auto isIt = [vci = number](const Pvc& pvc) { return pvc.vci == vci; };
    const auto found = std::ranges::find_if(list, isIt);
    if (found == list.end()) throw notThere;
    if (std::ranges::count_if(list, isIt) > 1)
        throw Failure(Status::wrongValue,
                      fmt::format("{} has several PVCs with VCI {}: name one by its [INDEX]", path, word),
                      path);
    return static_cast<std::size_t>(found - list.begin());
}

template <class Pvc>
void add(const ServiceId& service, const Words& words, std::vector<Pvc>& list, std::vector<ListStep>& steps) {
    Pvc pvc;
    pvc.encapsulation = 1;
    takeAddress(words[0], pvc);
    takeWords(std::span(words).subspan(1), pvc);
    if (std::ranges::count(list, pvc)) return;
    list.push_back(pvc);
    steps.push_back(step(service, ListEdit::add, pvc, ListEdit::remove, pvc));
}

template <class Pvc>
void modify(const ServiceId& service, const Words& words, std::vector<Pvc>& list,
            std::vector<ListStep>& steps) {
    Pvc& pvc = list[placeOf(words[0], service.name().path, list)];
    const Pvc before = pvc;
    takeWords(std::span(words).subspan(1), pvc);
    if (pvc != before) steps.push_back(step(service, ListEdit::modify, pvc, ListEdit::modify, before));
}

template <class Pvc>
void remove(const ServiceId& service, const Words& words, std::vector<Pvc>& list,
            std::vector<ListStep>& steps) {
    std::set<std::size_t, std::greater<>> places;
    for (const std::string& word : words) places.insert(placeOf(word, service.name().path, list));
    for (const std::size_t place : places) {
        steps.push_back(step(service, ListEdit::remove, list[place], ListEdit::add, list[place]));
        list.erase(list.begin() + static_cast<std::ptrdiff_t>(place));
    }
}

enum class Verb { add, modify, remove };

// What can be wrong with the words themselves, before any file is read.
void checkWords(Verb verb, const Words& words) {
    const auto changing = std::span(words).subspan(1);
    if (verb == Verb::add && std::ranges::count(words, "vci") == 0)
        throw Failure(Status::usage, "a PVC needs \"vci\" and a number");
    if (verb == Verb::modify && changing.empty())
        throw Failure(Status::usage, "the words that change are missing");
    AtmBridgedPvc any;
    if (verb != Verb::remove) takeWords(changing, any);
    if (verb == Verb::modify) readEntryName(words[0]);
    if (verb == Verb::remove)
        for (const std::string& word : words) readEntryName(word);
}

Output run(Session& session, Verb verb, const std::string& path, const Words& words,
           const ChangeOptions& options) {
    ServiceId service;
    FirstFailure first;
    if (!options.dryRun) first.of(requireRoot);
    first.of([&] { service = readListService(path, "pvcs"); });
    first.of([&] { checkWords(verb, words); });
    first.raise();
    readListFor(session, service, options);
    const AtmDevices before = session.devices;
    std::vector<ListStep> steps;
    withRecord(service, [&](auto record) {
        auto& of = record(session.devices);
        if constexpr (requires { of.pvcs; }) {
            if (verb == Verb::add) add(service, words, of.pvcs, steps);
            if (verb == Verb::modify) modify(service, words, of.pvcs, steps);
            if (verb == Verb::remove) remove(service, words, of.pvcs, steps);
        }
    });
    return carryOutLists(session, before, steps, options);
}

struct Given {
    std::string path;
    Words words;
    ChangeOptions options;
    Verb verb = Verb::add;
};

}  // namespace

Run addPvc(CLI::App& command) {
    static constexpr struct {
        const char *name, *summary, *words, *form;
        Verb verb;
    } verbs[] = {
        {"add", "A further PVC", "ADDRESS vci N", "ADDRESS vci N [llc|null] [broadcast|noBroadcast] [rate N]",
         Verb::add},
        {"modify", "Change a PVC", "VCI WORD", "VCI or [INDEX], and the words that change", Verb::modify},
        {"delete", "Take PVCs away", "VCI", "VCI or [INDEX] of each", Verb::remove},
    };
    const auto given = std::make_shared<Given>();
    for (const auto& verb : verbs) {
        CLI::App* sub = addListVerb(command, verb.name, verb.summary);
        sub->add_option("PATH", given->path, "adapter1/lec2 or adapter1/ip")->required();
        sub->add_option(verb.words, given->words, verb.form)->required();
        given->options.add(*sub, false);
        sub->final_callback([given, chosen = verb.verb] { given->verb = chosen; });
    }
    return [given](Session& session) {
        return run(session, given->verb, given->path, given->words, given->options);
    };
}
