#include "change/pastchanges.h"

#include "change/history.h"
#include "change/saverecord.h"
#include "change/statedirectory.h"
#include "platform/stream.h"

#include <algorithm>
#include <cerrno>
#include <fmt/format.h>
#include <map>

using platform::files;
using platform::HostPath;

namespace {

HostPath inHistory(std::string_view entry, std::string_view name) {
    return platform::hostPath(fmt::format("{}/{}/{}", historyDirectory, entry, name));
}

// The content that a name stands for at this moment; false and errno when it cannot be told.
bool contentNow(const HostPath& place, std::optional<std::string>& content) {
    content.emplace();
    if (platform::readWhole(place, *content)) return true;
    content.reset();
    return errno == ENOENT;
}

bool sameOwnerAndMode(const HostPath& a, const HostPath& b) {
    struct stat left {
    }, right{};
    return files().status(a, left) == 0 && files().status(b, right) == 0 && left.st_uid == right.st_uid &&
           left.st_gid == right.st_gid && left.st_mode == right.st_mode;
}

// A file over the changes that are to be undone.
struct Course {
    std::string after;          // of the last of them
    std::string entry, stored;  // of the first of them
};

}  // namespace

int readPastChanges(std::vector<PastChange>& changes) {
    changes.clear();
    std::vector<std::string> names;
    if (files().list(platform::hostPath(historyDirectory), names) != 0) return errno == ENOENT ? 0 : errno;
    for (const std::string& name : names) {
        const unsigned number = changeNumber(name);
        std::string text;
        if (number == 0 || !platform::readWhole(inHistory(name, manifestName), text, largestManifest))
            continue;
        if (auto read = readManifest(text); read && changeNumber(read->manifest.number) == number)
            changes.push_back({number, std::move(*read)});
    }
    std::ranges::sort(changes, std::greater(), &PastChange::number);
    return 0;
}

unsigned nextChange() {
    std::vector<std::string> names;
    files().list(platform::hostPath(historyDirectory), names);
    unsigned newest = 0;
    for (const std::string& name : names) newest = std::max(newest, changeNumber(name));
    return newest + 1;
}

PastFiles filesBefore(unsigned number, const std::vector<PastChange>& changes) {
    std::map<std::string, Course> courses;
    for (const PastChange& change : changes) {
        if (change.number < number) break;
        for (const KeptFile& file : change.read.manifest.files) {
            const auto [course, isLast] = courses.try_emplace(file.name);
            if (isLast) course->second.after = file.after;
            course->second.entry = change.read.manifest.number;
            course->second.stored = file.stored;
        }
    }
    PastFiles past;
    for (const auto& [name, course] : courses) {
        const HostPath place = platform::hostPath(name);
        std::optional<std::string> now;
        if (!contentNow(place, now)) return {.edited = name, .error = errno};
        if (course.after != (now ? contentHash(*now) : noContent)) return {.edited = name};
        PastFile file{name, {}};
        if (!course.stored.empty()) {
            file.like = inHistory(course.entry, course.stored);
            if (!platform::readWhole(file.like, file.content.emplace()))
                return {.edited = name, .error = errno};
        }
        const bool same = file.content == now && (!now || sameOwnerAndMode(place, file.like));
        if (!same) past.files.push_back(std::move(file));
    }
    return past;
}
