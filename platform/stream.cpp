#include "platform/stream.h"

#include "platform/openfile.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <fmt/format.h>
#include <map>
#include <unistd.h>

namespace platform {

namespace {

// A cookie is a descriptor in its own heap cell.
int descriptorIn(void* cookie) {
    return *static_cast<int*>(cookie);
}

ssize_t readCookie(void* cookie, char* bytes, size_t count) {
    return files().read(descriptorIn(cookie), bytes, count);
}

// The C library takes 0, not -1, as a failed write.
ssize_t writeCookie(void* cookie, const char* bytes, size_t count) {
    return writeAll(descriptorIn(cookie), {bytes, count}) == 0 ? static_cast<ssize_t>(count) : 0;
}

int seekCookie(void* cookie, off64_t* offset, int whence) {
    const off_t place = files().seek(descriptorIn(cookie), *offset, whence);
    if (place < 0) return -1;
    *offset = place;
    return 0;
}

std::map<std::FILE*, int>& openStreams() {
    static std::map<std::FILE*, int> streams;
    return streams;
}

int closeCookie(void* cookie) {
    const std::unique_ptr<int> descriptor(static_cast<int*>(cookie));
    std::erase_if(openStreams(), [&](const auto& entry) { return entry.second == *descriptor; });
    return files().close(*descriptor);
}

Stream streamOver(int descriptor, const char* mode) {
    auto cookie = std::make_unique<int>(descriptor);
    std::FILE* stream = ::fopencookie(cookie.get(), mode, {readCookie, writeCookie, seekCookie, closeCookie});
    if (!stream) {
        files().close(descriptor);
        return nullptr;
    }
    static_cast<void>(cookie.release());
    openStreams().emplace(stream, descriptor);
    return Stream(stream);
}

std::size_t sizeIn(const struct stat& status, std::size_t limit) {
    return status.st_size > 0 ? std::min(limit, static_cast<std::size_t>(status.st_size)) : 0;
}

// From where the descriptor stands. `size` is what is expected.
bool readRest(int descriptor, std::size_t size, std::string& content, std::size_t limit) {
    constexpr std::size_t atLeast = 4096;  // the files of /proc tell no size
    std::size_t length = 0;
    content.clear();
    for (;;) {
        if (length == content.size()) content.resize(length == 0 && size ? size + 1 : length + atLeast);
        const std::size_t room = content.size() - length;
        const ssize_t n = files().read(descriptor, content.data() + length, room);
        if (n < 0 && errno == EINTR) continue;
        length += n > 0 ? static_cast<std::size_t>(n) : 0;
        // A file that gave less than there was room for, and all that it has, is at its end.
        const bool atEnd = n == 0 || (n > 0 && length == size && static_cast<std::size_t>(n) < room);
        if (n > 0 && !atEnd && length <= limit) continue;
        content.resize(atEnd ? length : 0);
        if (!atEnd && n > 0) errno = EFBIG;
        return atEnd;
    }
}

}  // namespace

int openRegular(const HostPath& path, struct stat& status) {
    const int descriptor = files().open(path, O_RDONLY | O_NONBLOCK | O_NOCTTY, 0);
    if (descriptor < 0) return -1;
    const bool known = files().status(descriptor, status) == 0;
    if (known && S_ISREG(status.st_mode)) return descriptor;
    const int error = !known ? errno : S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
    files().close(descriptor);
    errno = error;
    return -1;
}

int openRegular(const HostPath& path) {
    struct stat status {};
    return openRegular(path, status);
}

Stream openForReading(const HostPath& path) {
    const int descriptor = openRegular(path);
    return descriptor < 0 ? nullptr : streamOver(descriptor, "r");
}

Stream streamForWriting(int descriptor) {
    return streamOver(descriptor, "w");
}

int streamDescriptor(std::FILE* stream) {
    const auto entry = openStreams().find(stream);
    return entry == openStreams().end() ? -1 : entry->second;
}

int closeWritten(Stream stream) {
    const bool bad = std::fflush(stream.get()) != 0 || std::ferror(stream.get());
    const int error = errno;
    if (std::fclose(stream.release()) != 0) return -1;
    if (!bad) return 0;
    errno = error;
    return -1;
}

bool readWhole(const HostPath& path, std::string& content, std::size_t limit) {
    content.clear();
    struct stat status {};
    const OpenFile file(openRegular(path, status));
    return file && readRest(file.descriptor(), sizeIn(status, limit), content, limit);
}

bool readWhole(int descriptor, std::string& content, std::size_t limit) {
    content.clear();
    struct stat status {};
    if (files().status(descriptor, status) != 0) status.st_size = 0;
    return files().seek(descriptor, 0, SEEK_SET) == 0 &&
           readRest(descriptor, sizeIn(status, limit), content, limit);
}

bool readNew(int descriptor, const struct stat& status, std::string& content, std::size_t limit) {
    return readRest(descriptor, sizeIn(status, limit), content, limit);
}

int writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t n = files().write(descriptor, bytes.data(), bytes.size());
        if (n < 0 && errno == EINTR) continue;
        if (n == 0) errno = EIO;
        if (n <= 0) return -1;
        bytes.remove_prefix(static_cast<size_t>(n));
    }
    return 0;
}

namespace {

// Takes the descriptor of `path`, or -1 and errno. On failure no file is left.
int fill(const HostPath& path, int descriptor, std::string_view content, OnDisk onDisk) {
    OpenFile file(descriptor);
    if (!file) return -1;
    const bool written = writeAll(descriptor, content) == 0 &&
                         files().truncate(descriptor, static_cast<off_t>(content.size())) == 0 &&
                         (onDisk == OnDisk::later || files().syncContent(descriptor) == 0);
    int error = errno;
    if (file.close() == 0 && written) return 0;
    if (written) error = errno;
    files().remove(path);
    errno = error;
    return -1;
}

// Of a draft that is there already the room on the disk is used again, if nobody else has a name for it.
int openDraft(const HostPath& draft, mode_t mode) {
    struct stat status {};
    OpenFile file(files().open(draft, O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY, 0));
    if (file && files().status(file.descriptor(), status) == 0 && S_ISREG(status.st_mode) &&
        status.st_nlink == 1 && status.st_uid == ::geteuid() && (status.st_mode & 07777) == mode)
        return file.release();
    files().remove(draft);
    return files().open(draft, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, mode);
}

}  // namespace

int writeWhole(const HostPath& path, std::string_view content, mode_t mode, OnDisk onDisk) {
    return fill(path, files().open(path, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, mode), content, onDisk);
}

int writeDraft(const HostPath& path, std::string_view content, mode_t mode, OnDisk onDisk) {
    return fill(path, openDraft(path, mode), content, onDisk);
}

namespace {

int putInPlace(const HostPath& draft, const HostPath& path) {
    if (files().rename(draft, path) == 0) return 0;
    const int error = errno;
    files().remove(draft);
    errno = error;
    return -1;
}

}  // namespace

int replaceWhole(const HostPath& path, std::string_view content, mode_t mode, OnDisk onDisk) {
    const HostPath draft{path.text + ".new"};
    return writeDraft(draft, content, mode, onDisk) == 0 ? putInPlace(draft, path) : -1;
}

int saveWhole(const HostPath& path, std::string_view content) {
    constexpr int names = 100;  // of drafts that were left behind, at most
    struct stat status {};
    OpenFile before(files().open(path, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY, 0));
    if (before && (files().status(before.descriptor(), status) != 0 || !S_ISREG(status.st_mode)))
        before.close();
    // One that this user cannot read has its mode at least.
    const bool unread = !before && files().status(path, status) == 0 && S_ISREG(status.st_mode);
    const mode_t mode = before ? 0600 : unread ? status.st_mode & 0777 : 0644;
    HostPath draft;
    int descriptor = -1;
    for (int i = 0; i < names && descriptor < 0 && (i == 0 || errno == EEXIST); ++i) {
        draft.text = fmt::format("{}/.tarvolin-{}-{}", directoryOf(path).text, ::getpid(), i);
        descriptor = files().open(draft, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, mode);
    }
    if (descriptor >= 0 && before) files().takeAttributes(before.descriptor(), descriptor);
    return fill(draft, descriptor, content, OnDisk::later) == 0 ? putInPlace(draft, path) : -1;
}

}  // namespace platform
