// Standard C streams over the file operations of files.h.
#pragma once

#include "platform/files.h"

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

namespace platform {

struct StreamCloser {
    void operator()(std::FILE* stream) const { std::fclose(stream); }
};
using Stream = std::unique_ptr<std::FILE, StreamCloser>;

// Opens an existing regular file for reading; anything else that stands there (a pipe, a directory) is
// refused with EINVAL or EISDIR, so that reading can never wait. -1 and errno on failure.
int openRegular(const HostPath& path);
int openRegular(const HostPath& path, struct stat& status);  // as it was when it was opened

// A stream over such a file. Null and errno on failure.
Stream openForReading(const HostPath& path);

// A stream for writing over an open descriptor, which it owns from then on, also when this fails (null). The
// descriptor stays reachable through streamDescriptor.
Stream streamForWriting(int descriptor);

// The descriptor under a stream of this header.
int streamDescriptor(std::FILE* stream);

// Closes a stream that was written. 0, or -1 and errno when not everything could be written.
int closeWritten(Stream stream);

// The whole content of a regular file. False and errno on failure or when it holds more than `limit` bytes
// (EFBIG).
bool readWhole(const HostPath& path, std::string& content, std::size_t limit = 64U << 20);

// The same of a file that is open, from its beginning.
bool readWhole(int descriptor, std::string& content, std::size_t limit = 64U << 20);

// The same of a file that has just been opened with this status.
bool readNew(int descriptor, const struct stat& status, std::string& content, std::size_t limit = 64U << 20);

// Writes everything, also when the system takes it in parts or is interrupted. 0, or -1 and errno.
int writeAll(int descriptor, std::string_view bytes);

enum class OnDisk { now, later };

// Makes a new file of this content, and brings the content to the disk now or leaves that to the system. 0,
// or -1 and errno (EEXIST when there is anything of the name): then no file is left.
int writeWhole(const HostPath& path, std::string_view content, mode_t mode, OnDisk onDisk);

// The same into a file that nobody reads yet. What an earlier one of the name has on the disk is used again.
int writeDraft(const HostPath& path, std::string_view content, mode_t mode, OnDisk onDisk);

// The same with a draft beside it, "<name>.new", which is renamed over whatever has the name. On failure that
// is as it was, and no draft is left. The directory is not brought to the disk.
int replaceWhole(const HostPath& path, std::string_view content, mode_t mode, OnDisk onDisk);

// The same for a path that the user has chosen: the draft gets a name that is not in use, so that no other
// file is touched. A regular file that is replaced passes on its owner, mode and ACL as far as this user may
// set them; otherwise the mode is 0644 less the umask. When the content comes to the disk is left to the
// system.
int saveWhole(const HostPath& path, std::string_view content);

}  // namespace platform
