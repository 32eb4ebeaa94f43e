// What a change sends to the driver, and what is kept of it.
#include "change/changeround.h"
#include "change/driverphase.h"
#include "change/listrequests.h"
#include "change/restart.h"
#include "change/sent.h"
#include "config/recordrows.h"

#include <algorithm>
#include <ctime>
#include <fcntl.h>
#include <fmt/format.h>
#include <span>
#include <type_traits>

namespace {

template <class Record> bool isEnabled(const Record& record) {
    if constexpr (requires { record.enabled; })
        return record.enabled != 0;
    else
        return true;
}

// Which services of an adapter are given other settings, or other lists, than before.
ServiceSet differing(int adapter, const ServiceSet& among, const AtmDevices& before,
                     const AtmDevices& after) {
    ServiceSet set;
    forEachService(adapter, [&](const ServiceName&, auto record, const std::string&, auto bit) {
        using Record = std::remove_cvref_t<decltype(record(before))>;
        const Record &was = record(before), &is = record(after);
        bool differs = !sameSettings(was, is);
        if constexpr (hasList<Record>) differs |= *listOf(was) != *listOf(is);
        // What is stopped and stays so is not stopped again: some services refuse that.
        differs &= isEnabled(was) || isEnabled(is);
        bit(set) = differs && bit(among);
    });
    return set;
}

ServiceSet without(const ServiceSet& set, const ServiceSet& others) {
    ServiceSet rest;
    rest.lec = set.lec & ~others.lec;
    rest.les = set.les & ~others.les;
    rest.lecs = set.lecs && !others.lecs;
    rest.ip = set.ip && !others.ip;
    rest.signalling = set.signalling && !others.signalling;
    return rest;
}

// Of those about the service itself, not about entries of its list; null: there is none.
const SentRequest* lastOf(std::span<const SentRequest> requests, const std::string& service) {
    const auto last = std::find_if(requests.rbegin(), requests.rend(), [&](const SentRequest& request) {
        return request.service == service && request.subject.empty();
    });
    return last == requests.rend() ? nullptr : &*last;
}

bool tookOne(std::span<const SentRequest> requests, const std::string& service) {
    return std::ranges::any_of(requests, [&](const SentRequest& request) {
        return request.service == service && request.subject.empty() &&
               request.answer == RequestResult::taken;
    });
}

}  // namespace

// Calls visit(name, record, bit) for each service of these sets, in order; bit(sets) is its bit in others.
void AdapterChange::forEachDue(const ServiceSets& due, auto visit) {
    for (const int adapter : order_.adapters)
        forEachService(adapter, [&](const ServiceName& name, auto record, const std::string&, auto bit) {
            const auto bitOf = [&](auto& sets) -> decltype(auto) { return bit(sets[asIndex(adapter)]); };
            if (bitOf(due)) visit(name, record, bitOf);
        });
}

void AdapterChange::send() {
    ServiceSets due;
    for (const int adapter : order_.adapters) {
        const std::size_t a = asIndex(adapter);
        due[a] = without(order_.changed[a], merge_.givenUp[a]);
        // A second time only what has become different since, also what was given up after it had been sent.
        if (sent_) due[a] = differing(adapter, due[a] | sentServices_[a], *sent_, merge_.devices);
        sentServices_[a] = sentServices_[a] | due[a];
    }
    const std::size_t before = result_.record.requests.size();
    if (due.any() || order_.tellLists) {
        if (!driverStopped_) tell(due, order_.driver ? DriverUse::told : DriverUse::none);
        copyAdapters(order_.adapters, merge_.devices, sent_ ? *sent_ : sent_.emplace());
    }
    lookAhead(due, before);
}

void AdapterChange::tell(const ServiceSets& due, DriverUse use) {
    const std::size_t before = result_.record.requests.size();
    DriverChannel channel;
    if (use == DriverUse::told) channel.open(O_RDWR);
    if (!sendingSince_) sendingSince_ = DriverPhase::Clock::now();
    DriverPhase phase(channel, use, result_.record, *sendingSince_, order_.progress);
    if (order_.tellLists && phase.wanted())
        sendListEdits(order_.adapters, sent_ ? *sent_ : order_.before, merge_.devices, due, phase, channel);
    for (const int a : order_.adapters) restartServices(a, merge_.devices, due[asIndex(a)], phase, channel);
    // What was said of these services before holds no longer.
    forEachDue(due, [&](const ServiceName& name, auto, auto) {
        std::erase_if(sentences_, [&](const DriverSentence& said) { return said.service == name.path; });
    });
    std::erase_if(sentences_, [](const DriverSentence& said) { return said.service.empty(); });
    const std::vector<DriverSentence> sentences = phase.sentences();
    sentences_.insert(sentences_.end(), sentences.begin(), sentences.end());
    result_.driver.clear();
    for (const DriverSentence& sentence : sentences_) result_.driver.push_back(sentence.text);
    driverStopped_ = phase.stopped();
    driverLost_ = phase.lost();
    if (use == DriverUse::told) noteSent(due, before);
}

// A service that took settings in an earlier round, and has not been restarted with those that are saved now,
// is ahead of the file. `before`: how many requests there were before this round.
void AdapterChange::lookAhead(const ServiceSets& due, std::size_t before) {
    const std::span<const SentRequest> all = result_.record.requests;
    forEachDue(due, [&](const ServiceName& name, auto, auto bit) {
        const SentRequest *earlier = lastOf(all.first(before), name.path),
                          *now = lastOf(all.subspan(before), name.path);
        const bool isKnown = !now || now->answer != RequestResult::unanswered;
        bit(ahead_) = !tookOne(all.subspan(before), name.path) && isKnown &&
                      (bit(ahead_) || (earlier && earlier->answer == RequestResult::taken));
    });
}

void AdapterChange::noteDriverAhead() {
    if (driverLost_) return;
    forEachDue(ahead_, [&](const ServiceName& name, auto, auto) {
        result_.notes.push_back(
            fmt::format("The driver runs {} with settings that are not in the file.", name.words));
    });
}

// A restart sends the service's list, too; of one that cannot be read nothing is known.
void AdapterChange::noteUnknownLists(Round& round) {
    if (!order_.driver) return;
    forEachDue(sentServices_, [&](const ServiceName& name, auto record, auto) {
        const auto& service = record(round.theirs);
        if constexpr (hasList<std::remove_cvref_t<decltype(service)>>)
            if (const std::string file = listFileOf(service).str();
                round.editor.unknownLists().contains(file))
                result_.notes.push_back(
                    fmt::format("{} was given no list: {} cannot be read.", name.words, file));
    });
}

// What the driver has taken is kept; where it has not answered nothing is known any more.
void AdapterChange::noteSent(const ServiceSets& due, std::size_t before) {
    if (configuration_.forgetLostDriver()) return;
    LastSent sent;
    sent.load();
    for (const int adapter : order_.adapters)
        if (due[asIndex(adapter)].any()) noteSent(adapter, due[asIndex(adapter)], before, sent);
    sent.save();
}

void AdapterChange::noteSent(int adapter, const ServiceSet& due, std::size_t before, LastSent& sent) {
    const std::span<const SentRequest> requests = std::span(result_.record.requests).subspan(before);
    const DriverIdentity identity = driverIdentity(
        configuration_.driverRevision, configuration_.mine().lec[asIndex(adapter)][0].mac.GetFMacAddress());
    bool unknown = false;
    forEachService(adapter, [&](const ServiceName& name, auto record, const std::string&, auto bit) {
        if (!bit(due)) return;
        const SentRequest* last = lastOf(requests, name.path);
        if (!last) return;
        unknown |= last->answer == RequestResult::unanswered;
        if (last->answer != RequestResult::taken) {
            const bool onlyStopped = tookOne(requests, name.path);
            if (onlyStopped) sent.forgetService(adapter, name.path);
            return;
        }
        const auto& settings = record(merge_.devices);
        std::map<std::string, std::string> values;
        sent.forgetService(adapter, name.path);
        for (const auto& row : keyRows<std::remove_cvref_t<decltype(settings)>>())
            // A service is stopped without its settings.
            if (isEnabled(settings) || std::string_view(row.name) == "enabled")
                values[row.name] = valueText(row, settings, ValueForm::name);
        sent.note(adapter, identity, name.path, values, std::time(nullptr));
    });
    if (unknown) sent.forget(adapter, "A request got no answer.");
}
