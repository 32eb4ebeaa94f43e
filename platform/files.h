// The file operations that the configuration needs, one virtual function each, so that a test can make any of
// them fail. All follow the system's calls: -1 and errno on failure. Streams over them: stream.h.
#pragma once

#include "platform/root.h"

#include <string>
#include <sys/stat.h>
#include <sys/types.h>
#include <vector>

namespace platform {

class Files {
  public:
    virtual ~Files() = default;

    // `flags` as for open(2); O_CLOEXEC is added. Descriptors are closed with close().
    virtual int open(const HostPath& path, int flags, mode_t mode) = 0;
    virtual ssize_t read(int descriptor, void* bytes, size_t count) = 0;
    virtual ssize_t write(int descriptor, const void* bytes, size_t count) = 0;
    virtual off_t seek(int descriptor, off_t offset, int whence) = 0;
    virtual int truncate(int descriptor, off_t length) = 0;
    virtual int sync(int descriptor) = 0;
    // Without the file's times, owner and mode: cheaper for a file that keeps its size and its room.
    virtual int syncContent(int descriptor) { return sync(descriptor); }
    virtual int close(int descriptor) = 0;

    virtual int status(int descriptor, struct stat& result) = 0;
    virtual int status(const HostPath& path, struct stat& result) = 0;
    // Gives one open file the owner, mode, ACL, extended attributes and security label of another. Whoever
    // could not open the other file cannot open this one at any moment, if its mode was 0600.
    virtual int takeAttributes(int from, int to) = 0;
    // Gives the second file the times of the first.
    virtual int takeTimes(int, int) { return 0; }

    virtual int rename(const HostPath& from, const HostPath& to) = 0;
    virtual int remove(const HostPath& path) = 0;

    // The path with every symbolic link followed. The file itself need not exist, not even as the target of a
    // link; its directory must.
    virtual int resolve(const HostPath& path, HostPath& result) = 0;

    // remove() takes empty directories, too. link() gives a symbolic link itself a second name.
    virtual int makeDirectory(const HostPath& path, mode_t mode) = 0;
    virtual int link(const HostPath& from, const HostPath& to) = 0;

    // The names in a directory without "." and "..", in no order. A symbolic link to a directory is refused.
    virtual int list(const HostPath& directory, std::vector<std::string>& names) = 0;
};

Files& files();

// Replaces the file operations; null restores the system's. Returns the previous ones. Neither is owned.
Files* setFiles(Files* other);

// The directory that holds the file: "/etc/atm" for "/etc/atm/tvconf".
HostPath directoryOf(const HostPath& file);

// Syncs a directory to the disk. 0, or -1 and errno.
int syncDirectory(const HostPath& directory);

}  // namespace platform
