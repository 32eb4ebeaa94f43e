#include "change/history.h"

#include "change/audit.h"
#include "change/statedirectory.h"
#include "platform/debuglog.h"
#include "platform/files.h"
#include "platform/host.h"
#include "platform/stream.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <fmt/format.h>
#include <utility>

using platform::files;
using platform::HostPath;

namespace {

constexpr const char* none = "none";

HostPath within(const HostPath& directory, std::string_view name) {
    return {fmt::format("{}/{}", directory.text, name)};
}

std::string systemPath(std::string_view number) {
    return fmt::format("{}/{}", historyDirectory, number);
}

// Of an entry's name, else 0. Names of ten digits and more are nobody's: the history does not get there.
unsigned numberOf(std::string_view name) {
    unsigned number = 0;
    const char* end = name.data() + name.size();
    const auto [stopped, error] = std::from_chars(name.data(), end, number);
    return error == std::errc() && stopped == end && name.size() < 10 ? number : 0;
}

// The names of the entries, oldest first. False and errno when the directory cannot be read.
bool entriesIn(const HostPath& history, std::vector<std::string>& names) {
    if (files().list(history, names) != 0) return false;
    std::erase_if(names, [](const std::string& name) { return numberOf(name) == 0; });
    std::ranges::sort(names, {}, numberOf);
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

// `names` are the entries beside the newest, oldest first.
void prune(std::vector<std::string> names, const std::string& newest) {
    const HostPath history = platform::hostPath(historyDirectory);
    if (names.size() < keptEntries) return;
    names.resize(names.size() + 1 - keptEntries);
    // What is no directory is no entry, and stays without a word.
    for (const std::string& name : names)
        if (removeEntry(within(history, name)) != 0 && errno != ENOTDIR && errno != ELOOP)
            say(newest, systemPath(name), errno);
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

}  // namespace

void HistoryEntry::giveUp(const std::string& systemPath) {
    say(none, systemPath, errno);
    discard();
}

void HistoryEntry::begin(std::span<const FileAtRisk> atRisk) {
    HostPath history;
    older_.clear();
    if (makeStateDirectory(historyDirectory, history) != 0 || !entriesIn(history, older_))
        return giveUp(std::string(historyDirectory));
    const std::string number = fmt::format("{:04}", older_.empty() ? 1 : numberOf(older_.back()) + 1);
    const HostPath place = within(history, number);
    if (files().makeDirectory(place, 0700) != 0) return giveUp(systemPath(number));
    number_ = number;
    place_ = place;
    for (const FileAtRisk& file : atRisk)
        if (keep(file) != 0) return giveUp(file.name);
}

int HistoryEntry::keep(const FileAtRisk& file) {
    files_.push_back({file.name, {}});
    HostPath target;
    if (files().resolve(file.path, target) != 0) return errno == ENOENT ? 0 : -1;
    files_.back().stored = storedName(files_.size(), file.name);
    const HostPath stored = within(place_, files_.back().stored);
    if (files().link(target, stored) == 0) return 0;
    // Another file system, one without links, or no file.
    std::string content;
    if (platform::readWhole(target, content))
        return platform::writeWhole(stored, content, 0600, platform::OnDisk::now);
    if (errno != ENOENT) return -1;
    files_.back().stored.clear();
    return 0;
}

// The manifest's content, and then the entry with all its names, come to the disk. The directory above does
// not: file systems write a new directory's own name no later than the names in it.
void HistoryEntry::finish(const ChangeRecord& record) {
    if (number_ == none) return;
    const Manifest manifest{number_, std::time(nullptr), platform::invoker(), platform::hostName(), files_};
    const std::string text = manifestText(manifest, record);
    if (platform::replaceWhole(within(place_, manifestName), text, 0600, platform::OnDisk::now) != 0 ||
        platform::syncDirectory(place_) != 0)
        say(number_, systemPath(number_), errno);
    prune(std::move(older_), number_);
}

void HistoryEntry::drop() {
    const std::string number = number_;
    if (discard() != 0) say(number, systemPath(number), errno);
}

int HistoryEntry::discard() {
    files_.clear();
    return std::exchange(number_, none) == none ? 0 : removeEntry(place_);
}
