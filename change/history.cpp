#include "change/history.h"

#include "change/audit.h"
#include "change/saverecord.h"
#include "change/statedirectory.h"
#include "platform/debuglog.h"
#include "platform/files.h"
#include "platform/host.h"
#include "platform/number.h"
#include "platform/openfile.h"
#include "platform/stream.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <fmt/format.h>
#include <utility>

using platform::files;
using platform::HostPath;

namespace {

constexpr const char* none = "none";

HostPath within(const HostPath& directory, std::string_view name) {
    return {fmt::format("{}/{}", directory.text, name)};
}

// A manifest in the making.
HostPath draftIn(const HostPath& entry) {
    return within(entry, fmt::format("{}.new", manifestName));
}

std::string systemPath(std::string_view number) {
    return fmt::format("{}/{}", historyDirectory, number);
}

struct Entry {
    unsigned number;
    std::string name;
};

// Oldest first. False and errno when the directory cannot be read.
bool entriesIn(const HostPath& history, std::vector<Entry>& entries) {
    std::vector<std::string> names;
    if (files().list(history, names) != 0) return false;
    for (std::string& name : names)
        if (const unsigned number = changeNumber(name)) entries.push_back({number, std::move(name)});
    std::ranges::sort(entries, {}, &Entry::number);
    return true;
}

// Removes a directory with its files. -1 and errno when something stays, as a directory within it does, and
// what a symbolic link leads to.
int removeEntry(const HostPath& entry) {
    std::vector<std::string> names;
    if (files().list(entry, names) != 0) return -1;
    for (const std::string& name : names) files().remove(within(entry, name));
    return files().remove(entry);
}

void say(const std::string& change, const std::string& path, int error) {
    tvlog << "History - " << path << ": " << std::strerror(error) << std::endl;
    auditTrouble(change, "history", fmt::format("{}: {}", path, std::strerror(error)));
}

// A link cannot replace a manifest; where there are no links the draft is renamed. 0, or -1 and errno.
int giveName(const HostPath& draft, const HostPath& manifest) {
    if (files().link(draft, manifest) == 0) return files().remove(draft);
    if (files().rename(draft, manifest) == 0) return 0;
    const int error = errno;
    files().remove(draft);
    errno = error;
    return -1;
}

// After a loss of power the name can be missing: the manifest is whole, and still called a draft then. In
// a directory that is used again the draft can be the manifest of another save, and stays one.
void nameDraft(const HostPath& entry, const std::string& number) {
    const HostPath manifest = within(entry, manifestName), draft = draftIn(entry);
    struct stat status {};
    if (files().status(manifest, status) == 0 || errno != ENOENT) return;
    const platform::OpenFile file(files().open(draft, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY, 0));
    std::string text;
    if (file && platform::readWhole(file.descriptor(), text, largestManifest) && isManifestOf(number, text))
        giveName(draft, manifest);
}

// An entry that goes becomes the new one: its directory, and the place on the disk of its manifest, which is
// a draft from then on. To give them back, and take others, costs as much as bringing something to the disk.
// False when the entry, or a part of it, stays.
bool reuse(const HostPath& entry, const HostPath& as) {
    std::vector<std::string> names;
    if (files().list(entry, names) != 0) return false;
    for (const std::string& name : names)
        if (name != manifestName && files().remove(within(entry, name)) != 0) return false;
    const HostPath manifest = within(entry, manifestName);
    files().link(manifest, draftIn(entry));
    return (files().remove(manifest) == 0 || errno == ENOENT) && files().rename(entry, as) == 0;
}

// Removes the oldest entries, so that there is room for one. The last of them becomes that one, `next`, if
// possible: then true. The entries come oldest first.
bool makeRoom(std::span<const Entry> entries, const HostPath& history, const std::string& next) {
    if (entries.size() < keptEntries) return false;
    for (const Entry& old : entries.first(entries.size() + 1 - keptEntries)) {
        const HostPath entry = within(history, old.name);
        const bool last = &old == &entries[entries.size() - keptEntries];
        if (last && reuse(entry, within(history, next))) return true;
        // What is no directory is no entry, and stays without a word.
        if (removeEntry(entry) != 0 && errno != ENOTDIR && errno != ELOOP)
            say(next, systemPath(old.name), errno);
    }
    return false;
}

// A name in the entry: numbered, since files of several directories can be called the same.
std::string storedName(std::size_t number, std::string_view path) {
    constexpr std::size_t longest = 100;  // far below the 255 bytes of a file name
    std::string base(path.substr(path.rfind('/') + 1).substr(0, longest));
    const auto unusual = [](char c) {
        return !(c >= 'a' && c <= 'z') && !(c >= 'A' && c <= 'Z') && !(c >= '0' && c <= '9') && c != '.' &&
               c != '-';
    };
    std::ranges::replace_if(base, unusual, '_');
    return fmt::format("{}-{}", number, base);
}

// Whoever restores the file finds its owner, mode and attributes there. Nobody else may enter the history.
int takeAttributes(const HostPath& from, const HostPath& to) {
    const platform::OpenFile source(platform::openRegular(from));
    const platform::OpenFile copy(platform::openRegular(to));
    if (!source || !copy) return -1;
    if (files().takeAttributes(source.descriptor(), copy.descriptor()) != 0) return -1;
    // As a hard link has them: the time of a content tells which edit it is from.
    return files().takeTimes(source.descriptor(), copy.descriptor());
}

}  // namespace

unsigned changeNumber(std::string_view name) {
    const auto number = platform::wholeNumber<unsigned>(name);
    return name.size() < 10 ? number.value_or(0) : 0;
}

void dropChange(const std::string& number) {
    if (removeEntry(platform::hostPath(systemPath(number))) != 0 && errno != ENOENT)
        say(number, systemPath(number), errno);
}

std::string rightsText(const struct stat& status) {
    return fmt::format("{:o} {} {}", status.st_mode, status.st_uid, status.st_gid);
}

std::string rightsAt(const HostPath& file) {
    struct stat status {};
    return files().status(file, status) == 0 ? rightsText(status) : "";
}

std::string nameOfNewContent(std::size_t index) {
    return fmt::format("{}.after", index + 1);
}

void HistoryEntry::giveUp(const std::string& systemPath) {
    say(none, systemPath, errno);
    discard();
}

void HistoryEntry::begin(std::span<const FileAtRisk> atRisk) {
    HostPath history;
    std::vector<Entry> entries;
    if (makeStateDirectory(historyDirectory, history) != 0 || !entriesIn(history, entries))
        return giveUp(std::string(historyDirectory));
    if (!entries.empty()) nameDraft(within(history, entries.back().name), entries.back().name);
    const std::string number = fmt::format("{:04}", entries.empty() ? 1 : entries.back().number + 1);
    const HostPath place = within(history, number);
    if (!makeRoom(entries, history, number) && files().makeDirectory(place, 0700) != 0)
        return giveUp(systemPath(number));
    number_ = number;
    place_ = place;
    for (const FileAtRisk& file : atRisk)
        if (keep(file) != 0) return giveUp(file.name);
}

int HistoryEntry::keep(const FileAtRisk& file) {
    files_.push_back({file.name, {}, file.after ? contentHash(*file.after) : noContent, file.rights});
    HostPath target;
    if (files().resolve(file.path, target) != 0) return errno == ENOENT ? 0 : -1;
    files_.back().stored = storedName(files_.size(), file.name);
    const HostPath stored = within(place_, files_.back().stored);
    if (files().link(target, stored) == 0) return 0;
    // Another file system, one without links, or no file.
    std::string content;
    if (platform::readWhole(target, content)) {
        if (platform::writeWhole(stored, content, 0600, platform::OnDisk::now) != 0) return -1;
        return takeAttributes(target, stored);
    }
    if (errno != ENOENT) return -1;
    files_.back().stored.clear();
    return 0;
}

// Only the manifest is brought to the disk, as a draft: file systems write a new file's name with its
// content. Where a loss of power takes back its own name, the next save gives it that (nameDraft).
int HistoryEntry::addManifest(const ChangeRecord& record) const {
    const Manifest manifest{number_, std::time(nullptr), platform::invoker(), platform::hostName(), files_};
    const HostPath draft = draftIn(place_);
    // Manifests of one size take each other's room on the disk without more.
    constexpr std::size_t block = 4096;
    std::string text = manifestText(manifest, record);
    text.append((block - text.size() % block) % block, ' ');
    return platform::writeDraft(draft, text, 0600, platform::OnDisk::now) == 0
               ? giveName(draft, within(place_, manifestName))
               : -1;
}

void HistoryEntry::finish(const ChangeRecord& record) {
    if (number_ != none && addManifest(record) != 0) say(number_, systemPath(number_), errno);
}

void HistoryEntry::announce(std::span<const FileAtRisk> files, ChangeRecord record) {
    if (number_ == none) return;
    record.result = cutOff;
    for (std::size_t i = 0; i < files.size(); ++i)
        if (files[i].after && platform::writeWhole(within(place_, nameOfNewContent(i)), *files[i].after, 0600,
                                                   platform::OnDisk::now) != 0)
            say(number_, systemPath(number_), errno);
    if (addManifest(record) != 0) say(number_, systemPath(number_), errno);
}

int noteResult(const std::string& number, const std::string& result, const std::string& note) {
    const HostPath manifest = within(platform::hostPath(systemPath(number)), manifestName);
    std::string text;
    if (!platform::readWhole(manifest, text, largestManifest)) return -1;
    text = withResult(text, result, note);
    return text.empty() ? 0 : platform::replaceWhole(manifest, text, 0600, platform::OnDisk::now);
}

void HistoryEntry::drop() {
    const std::string number = number_;
    if (discard() != 0) say(number, systemPath(number), errno);
}

int HistoryEntry::discard() {
    files_.clear();
    return std::exchange(number_, none) == none ? 0 : removeEntry(place_);
}
