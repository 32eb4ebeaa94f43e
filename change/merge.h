// What this program changed and what others changed since, brought together key by key.
#pragma once

#include "change/changerecord.h"
#include "change/services.h"

#include <map>
#include <span>
#include <string>
#include <vector>

// The same key or entry, changed by both. The texts of both sides are part of the question: when one of them
// changes again, it is another question.
struct Conflict {
    std::string line;  // "LEC 2 ELAN MTU: yours 4544, in the file 9234"

    bool operator<(const Conflict& other) const { return line < other.line; }
};

// What was decided: true takes the user's side, false the file's.
using Decisions = std::map<Conflict, bool>;

// An entry of a list that was decided for the file: a running service has what the user made of it.
struct ListEntry {
    std::string service, name;  // "LEC 1", "PVC 0 / 204"
};

struct Merge {
    AtmDevices devices;               // of these adapters only
    std::vector<Conflict> conflicts;  // that are not decided; the file's side is taken meanwhile
    ServiceSets givenUp;              // everything that the user changed there was decided for the file
    std::vector<ListEntry> entriesGivenUp;
    std::vector<KeyChange> takenOver;  // changed by others
    std::vector<ListChange> takenOverLists;
};

// `base` is what the files had when `mine` was made of it, `theirs` what they have now. Without `settings`
// only the lists are mine, and everything else theirs. What is not in the files (MAC addresses) comes from
// mine.
Merge mergeAdapters(std::span<const int> adapters, const AtmDevices& base, const AtmDevices& mine,
                    const AtmDevices& theirs, bool settings, const Decisions& decisions);

// When nobody is asked: takes from `theirs` what `mine` has not changed, into both base and mine. A key or
// list that was changed stays as it is, in both, so that a later merge still knows.
void takeOver(int adapter, AtmDevices& base, AtmDevices& mine, const AtmDevices& theirs);

// What differs between two tables.
std::vector<KeyChange> keyChanges(std::span<const int> adapters, const AtmDevices& before,
                                  const AtmDevices& after);
std::vector<ListChange> listChanges(std::span<const int> adapters, const AtmDevices& before,
                                    const AtmDevices& after);
