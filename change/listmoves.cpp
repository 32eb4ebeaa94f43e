#include "change/listmoves.h"

#include "change/listmerge.h"
#include "change/services.h"

#include <algorithm>
#include <map>
#include <type_traits>

namespace {

constexpr EntryKey ofClient = EntryKey{1} << 63;

std::string nameOf(EntryKey key) {
    if (key < ofClient) {
        AtmRoutedPvc pvc;
        pvc.vci = static_cast<std::uint16_t>(key);
        return entryName(pvc);
    }
    esiSelector::Bytes bytes;
    for (std::size_t i = bytes.size(); i-- > 0; key >>= 8U) bytes[i] = static_cast<std::uint8_t>(key);
    return entryName(esiSelector(bytes));
}

// Entries, and the services whose lists they are in. Each is taken once.
class Places {
  public:
    void add(EntryKey key, std::size_t service) { places_.emplace(key, service); }

    std::optional<std::size_t> find(EntryKey key) const {
        const auto found = places_.find(key);
        return found == places_.end() ? std::nullopt : std::optional(found->second);
    }
    bool take(EntryKey key, std::size_t service) {
        for (auto [at, end] = places_.equal_range(key); at != end; ++at)
            if (at->second == service) {
                places_.erase(at);
                return true;
            }
        return false;
    }
    bool elsewhere(EntryKey key, std::size_t service) const {
        const auto [first, end] = places_.equal_range(key);
        return std::any_of(first, end, [&](const auto& place) { return place.second != service; });
    }
    const std::multimap<EntryKey, std::size_t>& all() const { return places_; }

  private:
    std::multimap<EntryKey, std::size_t> places_;
};

// What one side has added and removed.
struct Changes {
    Changes(const AtmDevices& before, const AtmDevices& after, int adapter) {
        std::size_t service = 0;
        forEachService(adapter, [&](const ServiceName&, auto record, const std::string&, auto) {
            const auto &was = record(before), &is = record(after);
            if constexpr (hasList<decltype(was)>) {
                for (const auto& entry : withoutThose(*listOf(is), *listOf(was)))
                    added.add(entryKey(entry), service);
                for (const auto& entry : withoutThose(*listOf(was), *listOf(is)))
                    removed.add(entryKey(entry), service);
            }
            ++service;
        });
    }

    bool have(EntryKey key) const { return added.find(key) || removed.find(key); }
    bool elsewhere(EntryKey key, std::size_t service) const {
        return added.elsewhere(key, service) || removed.elsewhere(key, service);
    }

    Places added, removed;
};

}  // namespace

EntryKey entryKey(const AtmBridgedPvc& pvc) {
    return pvc.vci;
}

EntryKey entryKey(const AtmRoutedPvc& pvc) {
    return pvc.vci;
}

EntryKey entryKey(const esiSelector& client) {
    EntryKey key = 0;
    for (const std::uint8_t byte : client.bytes()) key = key << 8U | byte;
    return key | ofClient;
}

std::vector<EntryMove> movedApart(const AtmDevices& base, const AtmDevices& mine, const AtmDevices& theirs,
                                  int adapter) {
    std::vector<EntryMove> moves;
    Changes my(base, mine, adapter), their(base, theirs, adapter);
    for (const auto& [key, from] : my.removed.all()) {
        if (!their.removed.take(key, from)) continue;
        const std::optional<std::size_t> to = my.added.find(key), theirTo = their.added.find(key);
        if (to == from || theirTo == from) continue;  // changed where it is: the list's own conflict
        if (to) my.added.take(key, *to);
        if (theirTo) their.added.take(key, *theirTo);
        if (to != theirTo) moves.push_back({key, nameOf(key), from, to, theirTo});
    }
    for (const auto& [key, to] : my.added.all())
        if (const auto theirTo = their.added.find(key)) {
            their.added.take(key, *theirTo);
            if (to != *theirTo) moves.push_back({key, nameOf(key), std::nullopt, to, theirTo});
        }
    return moves;
}

std::set<std::size_t> entangledLists(const AtmDevices& base, const AtmDevices& mine, const AtmDevices& theirs,
                                     int adapter) {
    const Changes my(base, mine, adapter), their(base, theirs, adapter);
    std::set<std::size_t> lists;
    for (const Places* places : {&their.added, &their.removed})
        for (const auto& [key, service] : places->all())
            if (my.have(key) && (my.elsewhere(key, service) || their.elsewhere(key, service)))
                lists.insert(service);
    return lists;
}
