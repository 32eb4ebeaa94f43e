#include "change/statedirectory.h"

#include "platform/files.h"

#include <cerrno>
#include <unistd.h>

using platform::files;
using platform::HostPath;

namespace {

int makeOne(const HostPath& directory, mode_t mode) {
    return files().makeDirectory(directory, mode) == 0 || errno == EEXIST ? 0 : -1;
}

int checkOurs(const HostPath& directory) {
    struct stat found {};
    if (files().status(directory, found) != 0) return -1;
    errno = S_ISDIR(found.st_mode) ? EPERM : ENOTDIR;
    const bool ours = found.st_uid == ::geteuid() && !(found.st_mode & (S_IWGRP | S_IWOTH));
    return S_ISDIR(found.st_mode) && ours ? 0 : -1;
}

}  // namespace

int makeStateDirectory(std::string_view systemPath, HostPath& place) {
    place = platform::hostPath(systemPath);
    // Usually they are there.
    if (checkOurs(platform::hostPath(stateDirectory)) == 0 && checkOurs(place) == 0) return 0;
    for (std::size_t end = systemPath.find('/', 1);; end = systemPath.find('/', end + 1)) {
        const std::string_view part = systemPath.substr(0, end);
        const HostPath directory = platform::hostPath(part);
        const bool ours = part.starts_with(stateDirectory);
        if (makeOne(directory, ours ? 0700 : 0755) != 0 || (ours && checkOurs(directory) != 0)) return -1;
        if (end == std::string_view::npos) return 0;
    }
}
