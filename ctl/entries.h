// Entries of lists as scripts see them: in words (change/entrywords.h), and in JSON, where a PVC is an object
// and a client a text.
#pragma once

#include "change/entrywords.h"
#include "ctl/tree.h"

#include <span>
#include <string>

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
