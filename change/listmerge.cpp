#include "change/listmerge.h"

#include "platform/index.h"

#include <algorithm>
#include <fmt/format.h>
#include <span>
#include <unordered_map>

namespace {

std::string encapsulationText(int encapsulation) {
    return encapsulation == 1   ? "LLC"
           : encapsulation == 0 ? "Null"
                                : fmt::format("encapsulation {}", encapsulation);
}

std::string broadcastText(int broadcast) {
    return broadcast == 0   ? "no broadcast"
           : broadcast == 1 ? "broadcast"
                            : fmt::format("broadcast {}", broadcast);
}

template <class Pvc> std::string pvcText(const Pvc& pvc, const char* address) {
    return fmt::format("VCI {}, {}, {}{}, {} MB/s", pvc.vci, address, encapsulationText(pvc.encapsulation),
                       pvc.broadcast == 0 ? "" : ", " + broadcastText(pvc.broadcast), pvc.rate);
}

template <class Pvc>
std::string pvcDifferences(const Pvc& pvc, const Pvc& other, const char* address, bool otherAddress) {
    std::string text;
    const auto add = [&text](bool differs, const std::string& part) {
        if (differs) text += (text.empty() ? "" : ", ") + part;
    };
    add(otherAddress, address);
    add(pvc.encapsulation != other.encapsulation, encapsulationText(pvc.encapsulation));
    add(pvc.broadcast != other.broadcast, broadcastText(pvc.broadcast));
    add(pvc.rate != other.rate, fmt::format("{} MB/s", pvc.rate));
    return text;
}

// Whether one entry can be what became of another.
bool sameKey(const AtmBridgedPvc& a, const AtmBridgedPvc& b) {
    return a.vci == b.vci;
}
bool sameKey(const AtmRoutedPvc& a, const AtmRoutedPvc& b) {
    return a.vci == b.vci;
}
bool sameKey(const esiSelector&, const esiSelector&) {
    return false;
}

template <class Entry> std::optional<Entry> takeSuccessor(std::vector<Entry>& added, const Entry& entry) {
    const auto place = std::ranges::find_if(added, [&](const Entry& other) { return sameKey(entry, other); });
    if (place == added.end()) return {};
    std::optional<Entry> found = *place;
    added.erase(place);
    return found;
}

// Puts an entry in place of another, or takes the other away. Without the other it is appended.
template <class Entry>
void substitute(std::vector<Entry>& list, const std::optional<Entry>& old,
                const std::optional<Entry>& entry) {
    const auto place = old ? std::ranges::find(list, *old) : list.end();
    if (place == list.end()) {
        if (entry) list.push_back(*entry);
    } else if (entry) {
        *place = *entry;
    } else {
        list.erase(place);
    }
}

// Entries that differ in nothing but flags and rate are few.
struct EntryHash {
    std::size_t operator()(const AtmBridgedPvc& pvc) const { return mixed(pvc.mac.bytes(), pvc.vci); }
    std::size_t operator()(const AtmRoutedPvc& pvc) const { return mixed(pvc.ip.bytes(), pvc.vci); }
    std::size_t operator()(const esiSelector& client) const { return mixed(client.bytes(), 0); }

    static std::size_t mixed(const auto& bytes, std::size_t hash) {
        for (const std::uint8_t byte : bytes) hash = hash * 31 + byte;
        return hash;
    }
};

}  // namespace

std::string entryText(const AtmBridgedPvc& pvc) {
    return pvcText(pvc, pvc.mac.GetFMacAddress());
}

std::string entryText(const AtmRoutedPvc& pvc) {
    return pvcText(pvc, pvc.ip.GetFIPAddress());
}

std::string entryText(const esiSelector& client) {
    return client.GetF2EsiSelector();
}

std::string entryDifferences(const AtmBridgedPvc& pvc, const AtmBridgedPvc& other) {
    return pvcDifferences(pvc, other, pvc.mac.GetFMacAddress(), !(pvc.mac == other.mac));
}

std::string entryDifferences(const AtmRoutedPvc& pvc, const AtmRoutedPvc& other) {
    return pvcDifferences(pvc, other, pvc.ip.GetFIPAddress(), !(pvc.ip == other.ip));
}

std::string entryDifferences(const esiSelector& client, const esiSelector&) {
    return entryText(client);
}

std::string entryName(const AtmBridgedPvc& pvc) {
    return fmt::format("PVC 0 / {}", pvc.vci);
}

std::string entryName(const AtmRoutedPvc& pvc) {
    return fmt::format("PVC 0 / {}", pvc.vci);
}

std::string entryName(const esiSelector& client) {
    return fmt::format("Client {}", client.GetF2EsiSelector());
}

template <class Entry>
std::vector<Entry> withoutThose(const std::vector<Entry>& list, const std::vector<Entry>& others) {
    // What both begin with matches entry by entry.
    const auto [first, firstOther] = std::ranges::mismatch(list, others);
    std::vector<Entry> rest;
    if (first == list.end()) return rest;
    std::unordered_map<Entry, int, EntryHash> counts;
    counts.reserve(asIndex(others.end() - firstOther));
    for (const Entry& entry : std::span(firstOther, others.end())) ++counts[entry];
    for (const Entry& entry : std::span(first, list.end()))
        if (--counts[entry] < 0) rest.push_back(entry);
    return rest;
}

template <class Entry>
std::vector<Entry> mergeLists(const std::vector<Entry>& base, const std::vector<Entry>& mine,
                              const std::vector<Entry>& theirs, const DecideEntry<Entry>& decide) {
    if (theirs == base || mine == theirs) return mine;
    if (mine == base) return theirs;
    std::vector<Entry> added = withoutThose(mine, base), theirAdded = withoutThose(theirs, base);
    std::vector<Entry> merged = theirs;
    for (const Entry& removed : withoutThose(base, mine)) {
        const std::optional<Entry> successor = takeSuccessor(added, removed);
        if (std::ranges::find(merged, removed) != merged.end()) {
            substitute(merged, std::optional(removed), successor);
            continue;
        }
        const std::optional<Entry> theirSuccessor = takeSuccessor(theirAdded, removed);
        if (successor == theirSuccessor) continue;
        if (decide({removed, successor, theirSuccessor})) substitute(merged, theirSuccessor, successor);
    }
    for (const Entry& entry : added) {
        if (const auto same = std::ranges::find(theirAdded, entry); same != theirAdded.end())
            theirAdded.erase(same);  // both have added it
        else if (const auto other = takeSuccessor(theirAdded, entry); !other)
            merged.push_back(entry);
        else if (decide({entry, entry, other}))
            substitute(merged, other, std::optional(entry));
    }
    return merged;
}

#define FOR(Entry)                                                                                           \
    template std::vector<Entry> withoutThose(const std::vector<Entry>&, const std::vector<Entry>&);          \
    template std::vector<Entry> mergeLists(const std::vector<Entry>&, const std::vector<Entry>&,             \
                                           const std::vector<Entry>&, const DecideEntry<Entry>&);
FOR(AtmBridgedPvc)
FOR(AtmRoutedPvc)
FOR(esiSelector)
#undef FOR
