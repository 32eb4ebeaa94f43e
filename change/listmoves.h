// Entries that two sides have given to different lists of an adapter. Merged list by list they would be in
// both, where a driver takes a client of one server only, and a VCI once.
#pragma once

#include "model/tvdatbuf.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

// What tells an entry from the others of an adapter: a client's address, or a VCI.
using EntryKey = std::uint64_t;
EntryKey entryKey(const AtmBridgedPvc& pvc);
EntryKey entryKey(const AtmRoutedPvc& pvc);
EntryKey entryKey(const esiSelector& client);

// Services are places in namedServices(). `from`: where both sides have taken it away; nothing: both have
// added it. `mine` and `theirs`: where it went; nothing: nowhere.
struct EntryMove {
    EntryKey key;
    std::string name;  // "PVC 0 / 204"
    std::optional<std::size_t> from, mine, theirs;
};

// Lists in which they have changed an entry that my changes of another list are about, too. Whoever takes
// such a list over for known no longer sees a move of both as one.
std::set<std::size_t> entangledLists(const AtmDevices& base, const AtmDevices& mine, const AtmDevices& theirs,
                                     int adapter);

std::vector<EntryMove> movedApart(const AtmDevices& base, const AtmDevices& mine, const AtmDevices& theirs,
                                  int adapter);
