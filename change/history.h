// The history of saves: a directory for each save that changed a file, with the files as they were before and
// a manifest (doc/history.md). The newest are kept.
//
// A history serves a save and never stops one: what fails is said on the debug log and in syslog, and every
// call returns normally. The caller holds the program's lock from begin() to finish() or drop().
#pragma once

#include "change/changerecord.h"
#include "change/manifest.h"
#include "platform/root.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

constexpr std::size_t keptEntries = 50;

// The name of the manifest in an entry. A stored file's name begins with a digit.
constexpr const char* manifestName = "manifest.json";

// The entry of a change that has to be confirmed keeps the new content of each file. The name of that, for
// the file with this index in the manifest.
std::string nameOfNewContent(std::size_t index);

constexpr std::size_t largestManifest = 512U << 20;  // above one that fills all lists anew, and read at once

// The number that the name of an entry stands for, else 0. Names of ten digits and more are nobody's: the
// history does not get there.
unsigned changeNumber(std::string_view name);

// Mode and owner, as the manifest has them: "100644 0 0", the mode in octal digits.
std::string rightsText(const struct stat& status);
std::string rightsAt(const platform::HostPath& file);  // empty: there is no file

// A file that a save is about to replace or remove, or to create.
struct FileAtRisk {
    std::string name;  // its path as the configuration has it, without the root directory
    platform::HostPath path;
    std::optional<std::string_view> after;  // what it gets; nothing: it goes
    std::string rights = {};                // that it gets: rightsText(); empty: not known
};

// Adds to a change of the history how it has ended. 0, or -1 and errno.
int noteResult(const std::string& number, const std::string& result, const std::string& note);

// Removes what there is of a change that has changed no file.
void dropChange(const std::string& number);

class HistoryEntry {
  public:
    // Neither finished nor dropped: the entry stays without a manifest, as that of a killed process does.
    HistoryEntry() = default;
    HistoryEntry(const HistoryEntry&) = delete;
    HistoryEntry& operator=(const HistoryEntry&) = delete;

    // Makes the entry and keeps the files in it: as further names (hard links) of their contents where
    // possible, so the caller must replace or remove them, and not write into them. A symbolic link stands
    // for the file it leads to. A file that is not there is noted as that. The oldest entries make room.
    void begin(std::span<const FileAtRisk> files);

    // For a change that may have to be taken back without ever reaching finish(): adds a manifest with the
    // result cutOff, and the new contents.
    void announce(std::span<const FileAtRisk> files, ChangeRecord record);

    // Adds the manifest, in place of an announcement. Without an entry nothing happens.
    void finish(const ChangeRecord& record);

    // Removes the entry: the save has changed no file.
    void drop();

    // "0042", or "none" without an entry.
    const std::string& number() const { return number_; }

  private:
    int keep(const FileAtRisk& file);
    void giveUp(const std::string& systemPath);  // errno says why
    int discard();
    int addManifest(const ChangeRecord& record) const;

    std::string number_ = "none";
    platform::HostPath place_;
    std::vector<KeptFile> files_;
};
