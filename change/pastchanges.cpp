#include "change/pastchanges.h"

#include "change/history.h"
#include "change/saverecord.h"
#include "change/statedirectory.h"
#include "platform/openfile.h"
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
    std::string after, rights;  // of the last of them
    std::string entry, stored;  // of the first of them
};

// A number between a change and the newest one of which the history has no whole entry; 0: there is none.
unsigned missingAfter(unsigned number, const std::vector<PastChange>& changes) {
    const unsigned next = nextChange();
    while (number < next && std::ranges::count(changes, number, &PastChange::number) > 0) ++number;
    return number < next ? number : 0;
}

}  // namespace

int readPastChanges(std::vector<PastChange>& changes, std::vector<unsigned>* damaged) {
    changes.clear();
    std::vector<std::string> names;
    std::vector<unsigned> unread;
    if (files().list(platform::hostPath(historyDirectory), names) != 0) return errno == ENOENT ? 0 : errno;
    for (const std::string& name : names) {
        const unsigned number = changeNumber(name);
        std::string text;
        if (number == 0) continue;
        if (!platform::readWhole(inHistory(name, manifestName), text, largestManifest)) {
            if (errno != ENOENT && errno != ENOTDIR) unread.push_back(number);
            continue;
        }
        auto read = readManifest(text);
        if (!read) unread.push_back(number);
        if (read && changeNumber(read->manifest.number) == number)
            changes.push_back({number, std::move(*read)});
    }
    std::ranges::sort(changes, std::greater(), &PastChange::number);
    std::ranges::sort(unread, std::greater());
    if (damaged) *damaged = std::move(unread);
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
    if (const unsigned missing = missingAfter(number, changes)) return {.missing = missing};
    std::map<std::string, Course> courses;
    for (const PastChange& change : changes) {
        if (change.number < number) break;
        for (const KeptFile& file : change.read.manifest.files) {
            const auto [course, isLast] = courses.try_emplace(file.name);
            if (isLast) course->second.after = file.after, course->second.rights = file.rights;
            course->second.entry = change.read.manifest.number;
            course->second.stored = file.stored;
        }
    }
    PastFiles past;
    for (const auto& [name, course] : courses) {
        const HostPath place = platform::hostPath(name), kept = inHistory(course.entry, course.stored);
        std::optional<std::string> now;
        if (!contentNow(place, now)) return {.edited = name, .error = errno};
        PastFile file{name, {}};
        if (!course.stored.empty()) {
            file.like = std::make_shared<platform::OpenFile>(platform::openRegular(kept));
            if (!*file.like || !platform::readWhole(file.like->descriptor(), file.content.emplace()))
                return {.edited = fmt::format("{}/{}/{}", historyDirectory, course.entry, course.stored),
                        .error = errno};
        }
        if (file.content == now && (!now || sameOwnerAndMode(place, kept))) continue;
        const bool asLeft = course.after == (now ? contentHash(*now) : noContent) &&
                            (!now || course.rights.empty() || course.rights == rightsAt(place));
        if (!asLeft) return {.edited = name};
        past.files.push_back(std::move(file));
    }
    return past;
}

std::optional<ReplacedFiles> replacedFiles(const PastChange& change) {
    const std::string& entry = change.read.manifest.number;
    ReplacedFiles replaced;
    const auto read = [&](std::vector<PastFile>& files, const KeptFile& file, const std::string& stored) {
        files.push_back({file.name, {}});
        return stored.empty() ||
               platform::readWhole(inHistory(entry, stored), files.back().content.emplace());
    };
    for (std::size_t i = 0; i < change.read.manifest.files.size(); ++i) {
        const KeptFile& file = change.read.manifest.files[i];
        if (!read(replaced.before, file, file.stored) ||
            !read(replaced.after, file, file.after == noContent ? "" : nameOfNewContent(i)))
            return {};
        const auto& after = replaced.after.back().content;
        if (after && contentHash(*after) != file.after) return {};
    }
    return replaced;
}
