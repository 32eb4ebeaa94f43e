// The manifest of a save: what happened, as JSON (doc/history.md).
#pragma once

#include "change/changerecord.h"
#include "platform/user.h"

#include <ctime>
#include <optional>
#include <string>
#include <vector>

struct KeptFile {
    std::string name;         // its path without the root directory
    std::string stored;       // its name in the history's entry; empty: there was no such file
    std::string after;        // the content that the save gave it: contentHash(), noContent; empty: not known
    std::string rights = {};  // and the mode and owner: rightsText(); empty: not known
};

struct Manifest {
    std::string number;  // "0042"
    std::time_t time = 0;
    platform::Invoker invoker;
    std::string host;
    std::vector<KeptFile> files;
};

std::string manifestText(const Manifest& manifest, const ChangeRecord& record);

// What a manifest tells; nothing: the text is none. What a manifest of this format lacks is empty.
struct ReadManifest {
    Manifest manifest;  // without the time
    std::string time;   // as it was written
    ChangeRecord record;
};
std::optional<ReadManifest> readManifest(const std::string& text);

// A manifest's text with another result and a further sentence; empty: the text is none.
std::string withResult(const std::string& text, const std::string& result, const std::string& note);

// Whether a text is a whole one, of the change with this number.
bool isManifestOf(const std::string& number, const std::string& text);
