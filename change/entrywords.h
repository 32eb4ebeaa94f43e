// Entries of lists in the words that a shell takes:
//
//     00:20:40:00:a1:01 vci 100 llc broadcast rate 10        a PVC of a LEC
//     10.1.2.3 vci 200 null noBroadcast rate 0               a PVC of the Classical IP client
//     00:a0:3e:00:00:01-00                                   a client of a LES
//
// A code that has no name is "encapsulation code 7", "broadcast code 2".
#pragma once

#include "model/tvdatbuf.h"

#include <array>
#include <string>

// A flag of a PVC, and how its codes 0 and 1 are called.
struct PvcFlag {
    const char* name;
    std::array<const char*, 2> words;
};
inline constexpr PvcFlag encapsulationFlag{"encapsulation", {"null", "llc"}};
inline constexpr PvcFlag broadcastFlag{"broadcast", {"noBroadcast", "broadcast"}};

std::string entryWords(const AtmBridgedPvc& pvc);
std::string entryWords(const AtmRoutedPvc& pvc);
std::string entryWords(const esiSelector& client);
