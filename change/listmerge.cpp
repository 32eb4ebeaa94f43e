#include "change/listmerge.h"

#include "platform/index.h"

#include <algorithm>
#include <cstdint>
#include <deque>
#include <fmt/format.h>
#include <set>
#include <span>
#include <unordered_map>
#include <utility>

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
    add(pvc.vci != other.vci, fmt::format("VCI {}", pvc.vci));
    add(otherAddress, address);
    add(pvc.encapsulation != other.encapsulation, encapsulationText(pvc.encapsulation));
    add(pvc.broadcast != other.broadcast, broadcastText(pvc.broadcast));
    add(pvc.rate != other.rate, fmt::format("{} MB/s", pvc.rate));
    return text;
}

struct EntryHash {
    std::size_t operator()(const AtmBridgedPvc& pvc) const { return mixed(pvc.mac.bytes(), numbers(pvc)); }
    std::size_t operator()(const AtmRoutedPvc& pvc) const { return mixed(pvc.ip.bytes(), numbers(pvc)); }
    std::size_t operator()(const esiSelector& client) const { return mixed(client.bytes(), 0); }

    static std::size_t numbers(const auto& pvc) {
        std::size_t hash = pvc.vci;
        for (const std::int32_t number : {pvc.encapsulation, pvc.broadcast, pvc.rate})
            hash = hash * 65599 + static_cast<std::uint32_t>(number);
        return hash;
    }

    static std::size_t mixed(const auto& bytes, std::size_t hash) {
        for (const std::uint8_t byte : bytes) hash = hash * 31 + byte;
        return hash;
    }
};

// What an entry may have kept when it was changed: its VCI and its address, or else one of them. Clients have
// nothing of the kind.
enum class Kept { all, vci, address };
const auto& addressOf(const AtmBridgedPvc& pvc) {
    return pvc.mac.bytes();
}
const auto& addressOf(const AtmRoutedPvc& pvc) {
    return pvc.ip.bytes();
}
template <class Pvc> std::optional<std::uint64_t> kept(const Pvc& pvc, Kept what) {
    if (what == Kept::vci) return pvc.vci;
    std::uint64_t value = 0;
    for (const std::uint8_t byte : addressOf(pvc)) value = value << 8U | byte;
    return value << 16U | (what == Kept::all ? pvc.vci : 0U);
}
std::optional<std::uint64_t> kept(const esiSelector&, Kept) {
    return {};
}

// What each of the removed entries was changed into.
template <class Entry>
std::vector<std::optional<Entry>> successors(const std::vector<Entry>& removed,
                                             const std::vector<Entry>& added) {
    std::vector<std::optional<Entry>> found(removed.size());
    std::vector<bool> used(added.size());
    for (const Kept what : {Kept::all, Kept::vci, Kept::address}) {
        std::unordered_map<std::uint64_t, std::deque<std::size_t>> like;
        for (std::size_t i = 0; i < added.size(); ++i)
            if (const auto key = kept(added[i], what); key && !used[i]) like[*key].push_back(i);
        for (std::size_t i = 0; i < removed.size(); ++i) {
            const auto key = kept(removed[i], what);
            const auto places = key && !found[i] ? like.find(*key) : like.end();
            if (places == like.end() || places->second.empty()) continue;
            used[places->second.front()] = true;
            found[i] = added[places->second.front()];
            places->second.pop_front();
        }
    }
    return found;
}

// A list in which entries are found without searching it. Of equal ones the first is meant.
template <class Entry> class Indexed {
  public:
    explicit Indexed(const std::vector<Entry>& entries) {
        for (const Entry& entry : entries) add(entry);
    }

    bool has(const Entry& entry) const { return places_.contains(entry); }
    bool take(const Entry& entry) {
        if (!has(entry)) return false;
        remove(*places_.at(entry).begin());
        return true;
    }
    // The first with this entry's VCI.
    std::optional<Entry> takeSuccessor(const Entry& entry) {
        const auto key = kept(entry, Kept::vci);
        const auto found = key ? keys_.find(*key) : keys_.end();
        if (found == keys_.end()) return {};
        const std::size_t place = *found->second.begin();
        std::optional<Entry> successor = entries_[place];
        remove(place);
        return successor;
    }
    // Puts an entry in place of another, or takes the other away. Without the other it is appended.
    void substitute(const std::optional<Entry>& old, const std::optional<Entry>& entry) {
        if (!old || !has(*old)) {
            if (entry) add(*entry);
            return;
        }
        const std::size_t place = *places_.at(*old).begin();
        remove(place);
        if (entry) put(place, *entry);
    }
    void add(const Entry& entry) {
        entries_.emplace_back();
        put(entries_.size() - 1, entry);
    }

    std::vector<Entry> list() const {
        std::vector<Entry> all;
        for (const auto& entry : entries_)
            if (entry) all.push_back(*entry);
        return all;
    }

  private:
    void put(std::size_t place, const Entry& entry) {
        entries_[place] = entry;
        places_[entry].insert(place);
        if (const auto key = kept(entry, Kept::vci)) keys_[*key].insert(place);
    }
    void remove(std::size_t place) {
        const Entry entry = *std::exchange(entries_[place], std::nullopt);
        const auto leave = [place](auto& index, const auto& key) {
            const auto found = index.find(key);
            found->second.erase(place);
            if (found->second.empty()) index.erase(found);
        };
        leave(places_, entry);
        if (const auto key = kept(entry, Kept::vci)) leave(keys_, *key);
    }

    std::vector<std::optional<Entry>> entries_;
    std::unordered_map<Entry, std::set<std::size_t>, EntryHash> places_;
    std::unordered_map<std::uint64_t, std::set<std::size_t>> keys_;  // by VCI
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
    const std::vector<Entry> myRemoved = withoutThose(base, mine), theirRemoved = withoutThose(base, theirs);
    // What both have added is there, and nobody's change of anything.
    const std::vector<Entry> myNew = withoutThose(mine, base), theirNew = withoutThose(theirs, base);
    const std::vector<Entry> myAdded = withoutThose(myNew, theirNew),
                             theirAdded = withoutThose(theirNew, myNew);
    const auto mySuccessors = successors(myRemoved, myAdded),
               theirSuccessors = successors(theirRemoved, theirAdded);
    std::unordered_map<Entry, std::deque<std::size_t>, EntryHash> places;  // in theirRemoved
    for (std::size_t i = 0; i < theirRemoved.size(); ++i) places[theirRemoved[i]].push_back(i);

    Indexed<Entry> restOfMine(myAdded), restOfTheirs(theirAdded), merged(theirs);
    for (std::size_t i = 0; i < myRemoved.size(); ++i) {
        const Entry& removed = myRemoved[i];
        const std::optional<Entry>& successor = mySuccessors[i];
        if (successor) restOfMine.take(*successor);
        auto& left = places[removed];
        if (left.empty()) {  // they still have it
            merged.substitute(removed, successor);
            continue;
        }
        const std::optional<Entry> theirSuccessor = theirSuccessors[left.front()];
        left.pop_front();
        if (theirSuccessor) restOfTheirs.take(*theirSuccessor);
        if (successor == theirSuccessor) continue;
        if (decide({removed, successor, theirSuccessor})) merged.substitute(theirSuccessor, successor);
    }
    for (const Entry& entry : restOfMine.list()) {
        const std::optional<Entry> other = restOfTheirs.takeSuccessor(entry);
        if (!other)
            merged.add(entry);
        else if (decide({entry, entry, other}))
            merged.substitute(other, entry);
    }
    return merged.list();
}

#define FOR(Entry)                                                                                           \
    template std::vector<Entry> withoutThose(const std::vector<Entry>&, const std::vector<Entry>&);          \
    template std::vector<Entry> mergeLists(const std::vector<Entry>&, const std::vector<Entry>&,             \
                                           const std::vector<Entry>&, const DecideEntry<Entry>&);
FOR(AtmBridgedPvc)
FOR(AtmRoutedPvc)
FOR(esiSelector)
#undef FOR
