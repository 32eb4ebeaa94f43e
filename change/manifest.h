// The manifest of a save: what happened, as JSON (doc/history.md).
#pragma once

#include "change/changerecord.h"
#include "platform/user.h"

#include <ctime>
#include <string>
#include <vector>

struct KeptFile {
    std::string name;    // its path without the root directory
    std::string stored;  // its name in the history's entry; empty: there was no such file
};

struct Manifest {
    std::string number;  // "0042"
    std::time_t time = 0;
    platform::Invoker invoker;
    std::string host;
    std::vector<KeptFile> files;
};

std::string manifestText(const Manifest& manifest, const ChangeRecord& record);

// Whether a text is a whole one, of the change with this number.
bool isManifestOf(const std::string& number, const std::string& text);
