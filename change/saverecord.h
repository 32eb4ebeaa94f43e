// The record of a save that replaces several files: from the moment that it is on the disk the save happens,
// by whoever comes across it.
//
//     tarvolin-save 1
//     replace <tab> place <tab> copy <tab> content before <tab> content after
//     remove <tab> place <tab> identity <tab> content before
//     end <tab> hash of all lines above
//
// Places are paths of this host with symbolic links followed; a copy stands in the directory of its file. A
// content is the XXH3 hash (128 bits) of a file's bytes in hexadecimal, "-" for no file.
#pragma once

#include "platform/files.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

struct SaveStep {
    platform::HostPath place;
    std::string copy;      // its name; empty: the file is removed
    std::string before;    // contents
    std::string after;     // "-" when it is removed
    std::string identity;  // of a file that is removed, see fileIdentity; otherwise empty

    bool removes() const { return copy.empty(); }
    platform::HostPath copyPlace() const;
};

constexpr const char* noContent = "-";

std::string contentHash(std::string_view bytes);

// What tells a file from a later one with the same name and content: its number, and when it was last
// written. Its mode or a further name does not matter.
std::string fileIdentity(const struct stat& status);

// Nothing when a path could not be written in this form.
std::optional<std::string> saveRecordText(std::span<const SaveStep> steps);

// Nothing when the text is not a complete record.
std::optional<std::vector<SaveStep>> parseSaveRecord(std::string_view text);
