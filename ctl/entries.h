// Entries of lists as scripts see them:
//
//     00:20:40:00:a1:01 vci 100 llc broadcast rate 10        a PVC of a LEC
//     10.1.2.3 vci 200 null noBroadcast rate 0               a PVC of the Classical IP client
//     00:a0:3e:00:00:01-00                                   a client of a LES
//
// A PVC is an object in JSON, a client a text. What has no name is "encapsulation code 7", "broadcast code
// 2".
#pragma once

#include "ctl/tree.h"
#include "model/tvdatbuf.h"

#include <span>
#include <string>

std::string entryWords(const AtmBridgedPvc& pvc);
std::string entryWords(const AtmRoutedPvc& pvc);
std::string entryWords(const esiSelector& client);

Json entryJson(const AtmBridgedPvc& pvc);
Json entryJson(const AtmRoutedPvc& pvc);
Json entryJson(const esiSelector& client);

// Take words as a shell has them, "vci", "100", "llc": what they do not mention stays. Failure::usage for a
// word that is none, Failure::wrongValue for a number out of range.
void takeWords(std::span<const std::string> words, AtmBridgedPvc& pvc);
void takeWords(std::span<const std::string> words, AtmRoutedPvc& pvc);

// Failure::wrongValue, whose message says why.
void takeAddress(const std::string& text, AtmBridgedPvc& pvc);
void takeAddress(const std::string& text, AtmRoutedPvc& pvc);
esiSelector readClient(const std::string& text);

// An entry of a document. Failure::wrongValue, about `where`.
void readEntry(const Json& json, const std::string& where, AtmBridgedPvc& pvc);
void readEntry(const Json& json, const std::string& where, AtmRoutedPvc& pvc);
void readEntry(const Json& json, const std::string& where, esiSelector& client);
