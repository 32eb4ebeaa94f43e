// Lists as multisets of whole entries: what differs, and how the changes of two sides come together.
#pragma once

#include "model/tvdatbuf.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

// An entry in one line: "VCI 204, 00:a0:3e:00:00:01, LLC, broadcast, 7 MB/s", "00:a0:3e:00:00:01-00".
std::string entryText(const AtmBridgedPvc& pvc);
std::string entryText(const AtmRoutedPvc& pvc);
std::string entryText(const esiSelector& client);

// What an entry has that another one of the same name has not: "00:a0:3e:00:00:01, no broadcast".
std::string entryDifferences(const AtmBridgedPvc& pvc, const AtmBridgedPvc& other);
std::string entryDifferences(const AtmRoutedPvc& pvc, const AtmRoutedPvc& other);
std::string entryDifferences(const esiSelector& client, const esiSelector& other);

// What people call it: "PVC 0 / 204", "Client 00:a0:3e:00:00:01-00".
std::string entryName(const AtmBridgedPvc& pvc);
std::string entryName(const AtmRoutedPvc& pvc);
std::string entryName(const esiSelector& client);

// The entries of a list that another list does not have, each as often as it has more of them, in order.
template <class Entry>
std::vector<Entry> withoutThose(const std::vector<Entry>& list, const std::vector<Entry>& others);

// An entry that one side changed and the other changed or removed, or that both have added with the same VCI.
// The sides are what became of it.
template <class Entry> struct EntryConflict {
    Entry entry;
    std::optional<Entry> mine, theirs;  // none: removed
};

// Decides a conflict: true takes mine, false theirs.
template <class Entry> using DecideEntry = std::function<bool(const EntryConflict<Entry>&)>;

// My changes since `base` applied to their list. What one side removes and adds is a change of one entry
// if both have the same VCI (of several, the one with the same address), or else the same address. One that
// both add as it is, is there once. If nobody else has changed the list, the result is exactly mine.
template <class Entry>
std::vector<Entry> mergeLists(const std::vector<Entry>& base, const std::vector<Entry>& mine,
                              const std::vector<Entry>& theirs, const DecideEntry<Entry>& decide);
