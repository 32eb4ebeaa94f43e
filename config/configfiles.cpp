#include "config/configfiles.h"

#include "platform/openfile.h"
#include "platform/stream.h"

#include <algorithm>
#include <cerrno>
#include <utility>

using platform::files;

namespace {

bool sameTime(const timespec& a, const timespec& b) {
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

// A directory in place of a file changes with every file in it, copies of this program among them.
bool sameFile(const struct stat& a, const struct stat& b) {
    if (a.st_dev != b.st_dev || a.st_ino != b.st_ino || a.st_mode != b.st_mode) return false;
    return S_ISDIR(a.st_mode) ||
           (a.st_size == b.st_size && sameTime(a.st_mtim, b.st_mtim) && sameTime(a.st_ctim, b.st_ctim));
}

// The state is taken before the content: what somebody writes in between is noticed later.
FileAsRead readNow(const std::string& name) {
    FileAsRead file;
    const platform::HostPath path = platform::hostPath(name);
    const platform::OpenFile open(platform::openRegular(path, file.status));
    file.exists = open || errno != ENOENT;
    if (!open) {
        file.error = file.exists ? errno : 0;
        if (file.exists) files().status(path, file.status);
    } else if (!platform::readNew(open.descriptor(), file.status, file.content)) {
        file.error = errno;
        file.content.clear();
    }
    return file;
}

platform::HostPath placeNow(const std::string& name) {
    platform::HostPath place;
    return files().resolve(platform::hostPath(name), place) == 0 ? place : platform::HostPath();
}

}  // namespace

ConfigFiles::Entry& ConfigFiles::entry(const std::string& name) {
    const auto [place, isNew] = entries_.try_emplace(name);
    if (isNew) place->second.file = readNow(name);
    return place->second;
}

const FileAsRead& ConfigFiles::read(const std::string& name) {
    return entry(name).file;
}

const platform::HostPath& ConfigFiles::place(const std::string& name) {
    Entry& file = entry(name);
    if (!file.place) file.place = placeNow(name);
    return *file.place;
}

std::string& ConfigFiles::text(const std::string& name) {
    Entry& file = entry(name);
    file.removed = false;
    if (!file.edited) file.edited = file.file.content;
    return *file.edited;
}

void ConfigFiles::write(const std::string& name, std::string text) {
    Entry& file = entry(name);
    file.removed = false;
    file.edited = std::move(text);
}

const std::string& ConfigFiles::now(const std::string& name) {
    static const std::string none;
    const Entry& file = entry(name);
    return file.removed ? none : file.edited ? *file.edited : file.file.content;
}

void ConfigFiles::remove(const std::string& name) {
    entry(name).removed = true;
}

std::map<std::string, std::optional<std::string_view>> ConfigFiles::edits() const {
    std::map<std::string, std::optional<std::string_view>> edits;
    for (const auto& [name, entry] : entries_) {
        if (entry.removed) {
            if (entry.file.exists) edits[name] = std::nullopt;
        } else if (entry.edited && *entry.edited != entry.file.content) {
            edits[name] = entry.edited;
        }
    }
    return edits;
}

bool ConfigFiles::stands(const std::string& name, const Entry& entry) {
    struct stat now {};
    files().status(platform::hostPath(name), now);
    if (!sameFile(now, entry.file.status)) return false;
    // The same file at the place of its name: no link has come between.
    const bool direct = entry.file.exists && entry.place == platform::hostPath(name);
    return !entry.place || direct || *entry.place == placeNow(name);
}

bool ConfigFiles::standAsRead() const {
    return std::ranges::all_of(entries_, [](const auto& entry) { return stands(entry.first, entry.second); });
}

bool ConfigFiles::standsAsRead(const std::string& name) {
    return stands(name, entry(name));
}

timespec ConfigFiles::lastWritten() const {
    timespec last{};
    for (const auto& [name, entry] : entries_) {
        const timespec& time = entry.file.status.st_mtim;
        if (std::pair(time.tv_sec, time.tv_nsec) > std::pair(last.tv_sec, last.tv_nsec)) last = time;
    }
    return last;
}

void ConfigFiles::takeTimeOfChange(const std::string& name) {
    struct stat now {};
    if (files().status(place(name), now) != 0) return;
    for (auto& [other, entry] : entries_)  // it may have several names here
        if (entry.file.status.st_dev == now.st_dev && entry.file.status.st_ino == now.st_ino)
            entry.file.status.st_ctim = now.st_ctim;
}
