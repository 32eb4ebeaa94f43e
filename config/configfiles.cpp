#include "config/configfiles.h"

#include "platform/openfile.h"
#include "platform/stream.h"

#include <cerrno>

using platform::files;

namespace {

bool sameTime(const timespec& a, const timespec& b) {
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

bool sameFile(const struct stat& a, const struct stat& b) {
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino && a.st_size == b.st_size &&
           sameTime(a.st_mtim, b.st_mtim) && sameTime(a.st_ctim, b.st_ctim);
}

// The state is taken before the content: what somebody writes in between is noticed later.
FileAsRead readNow(const std::string& name) {
    FileAsRead file;
    if (files().resolve(platform::hostPath(name), file.place) != 0) {
        file.error = errno == ENOENT ? 0 : errno;
        return file;
    }
    const platform::OpenFile open(platform::openRegular(file.place));
    file.error = open ? 0 : errno;
    file.exists = file.error != ENOENT;
    if (!file.exists) {
        file.error = 0;
    } else if (!open) {  // a directory, or what may not be read, can be told from another one all the same
        files().status(file.place, file.status);
    } else if (files().status(open.descriptor(), file.status) != 0 ||
               !platform::readWhole(open.descriptor(), file.content)) {
        file.error = errno;
    }
    if (file.error) file.content.clear();
    return file;
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

std::string& ConfigFiles::text(const std::string& name) {
    Entry& file = entry(name);
    file.removed = false;
    if (!file.edited) file.edited = file.file.content;
    return *file.edited;
}

const std::string& ConfigFiles::now(const std::string& name) {
    static const std::string none;
    const Entry& file = entry(name);
    return file.removed ? none : file.edited ? *file.edited : file.file.content;
}

void ConfigFiles::remove(const std::string& name) {
    entry(name).removed = true;
}

std::map<std::string, std::optional<std::string>> ConfigFiles::edits() const {
    std::map<std::string, std::optional<std::string>> edits;
    for (const auto& [name, entry] : entries_) {
        if (entry.removed) {
            if (entry.file.exists) edits[name] = std::nullopt;
        } else if (entry.edited && *entry.edited != entry.file.content) {
            edits[name] = entry.edited;
        }
    }
    return edits;
}

bool ConfigFiles::standAsRead() const {
    for (const auto& [name, entry] : entries_) {
        const FileAsRead& file = entry.file;
        platform::HostPath place;
        struct stat now {};
        if (files().resolve(platform::hostPath(name), place) != 0) {
            if (!file.place.text.empty()) return false;
            continue;
        }
        const bool exists = files().status(place, now) == 0;
        if (place != file.place || exists != file.exists || (exists && !sameFile(now, file.status)))
            return false;
    }
    return true;
}

void ConfigFiles::takeTimeOfChange(const std::string& name) {
    struct stat now {};
    FileAsRead& file = entry(name).file;
    if (files().status(file.place, now) == 0) file.status.st_ctim = now.st_ctim;
}
