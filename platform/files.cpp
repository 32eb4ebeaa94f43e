#include "platform/files.h"

#include <acl/libacl.h>
#include <array>
#include <attr/libattr.h>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <string_view>
#include <unistd.h>

namespace platform {

namespace {

// perm_copy_fd has copied the mode and the ACL. Attributes that only the system itself may write stay behind.
int worthTaking(const char* name, error_context*) {
    const int action = ::attr_copy_action(name, nullptr);
    return action != ATTR_ACTION_SKIP && !std::string_view(name).starts_with("system.posix_acl_");
}

int realPath(const HostPath& path, HostPath& result) {
    const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr), &std::free);
    if (!real) return -1;
    result.text = real.get();
    return 0;
}

struct DirectoryCloser {
    void operator()(DIR* directory) const { ::closedir(directory); }
};

class SystemFiles : public Files {
  public:
    int open(const HostPath& path, int flags, mode_t mode) override {
        return ::open(path.c_str(), flags | O_CLOEXEC, mode);
    }
    ssize_t read(int descriptor, void* bytes, size_t count) override {
        return ::read(descriptor, bytes, count);
    }
    ssize_t write(int descriptor, const void* bytes, size_t count) override {
        return ::write(descriptor, bytes, count);
    }
    off_t seek(int descriptor, off_t offset, int whence) override {
        return ::lseek(descriptor, offset, whence);
    }
    int truncate(int descriptor, off_t length) override { return ::ftruncate(descriptor, length); }
    int sync(int descriptor) override { return ::fsync(descriptor); }
    int syncContent(int descriptor) override { return ::fdatasync(descriptor); }
    int close(int descriptor) override { return ::close(descriptor); }

    int status(int descriptor, struct stat& result) override { return ::fstat(descriptor, &result); }
    int status(const HostPath& path, struct stat& result) override { return ::stat(path.c_str(), &result); }
    int takeAttributes(int from, int to) override {
        struct stat before {
        }, now{};
        if (::fstat(from, &before) != 0 || ::fstat(to, &now) != 0) return -1;
        const bool same = before.st_uid == now.st_uid && before.st_gid == now.st_gid;
        if (!same && ::fchown(to, before.st_uid, before.st_gid) != 0) return -1;
        // The names are for messages, which nobody wants.
        if (::perm_copy_fd("", from, "", to, nullptr) != 0) return -1;
        return ::attr_copy_fd("", from, "", to, worthTaking, nullptr);
    }
    int takeTimes(int from, int to) override {
        struct stat before {};
        if (::fstat(from, &before) != 0) return -1;
        const timespec times[] = {before.st_atim, before.st_mtim};
        return ::futimens(to, times);
    }

    int rename(const HostPath& from, const HostPath& to) override {
        return std::rename(from.c_str(), to.c_str());
    }
    int remove(const HostPath& path) override { return std::remove(path.c_str()); }

    int resolve(const HostPath& path, HostPath& result) override {
        constexpr int mostLinks = 40;  // as the system's own limit
        HostPath file = path;
        for (int links = 0; links < mostLinks; ++links) {
            HostPath directory;
            if (realPath(directoryOf(file), directory) != 0) return -1;
            const std::string name = file.text.substr(file.text.rfind('/') + 1);
            file.text = (directory.text == "/" ? "" : directory.text) + '/' + name;
            std::array<char, PATH_MAX> target;
            const ssize_t length = ::readlink(file.c_str(), target.data(), target.size());
            if (length < 0 && (errno == EINVAL || errno == ENOENT)) {  // no link; nothing there
                result = file;
                return 0;
            }
            if (length < 0) return -1;
            const std::string_view next(target.data(), static_cast<std::size_t>(length));
            file.text = next.starts_with('/') ? next : directory.text + '/' + std::string(next);
        }
        errno = ELOOP;
        return -1;
    }

    int makeDirectory(const HostPath& path, mode_t mode) override { return ::mkdir(path.c_str(), mode); }
    int link(const HostPath& from, const HostPath& to) override {
        return ::linkat(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), 0);
    }
    int list(const HostPath& directory, std::vector<std::string>& names) override {
        names.clear();
        const int descriptor =
            ::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
        if (descriptor < 0) return -1;
        const std::unique_ptr<DIR, DirectoryCloser> stream(::fdopendir(descriptor));
        if (!stream) {
            ::close(descriptor);
            return -1;
        }
        for (;;) {
            errno = 0;
            const dirent* entry = ::readdir(stream.get());
            if (!entry) return errno ? -1 : 0;
            const std::string name = entry->d_name;
            if (name != "." && name != "..") names.push_back(name);
        }
    }
};

Files* current = nullptr;

}  // namespace

Files& files() {
    static SystemFiles system;
    return current ? *current : system;
}

Files* setFiles(Files* other) {
    Files* before = current;
    current = other;
    return before;
}

HostPath directoryOf(const HostPath& file) {
    const auto slash = file.text.rfind('/');
    if (slash == std::string::npos) return HostPath{"."};
    return HostPath{slash == 0 ? "/" : file.text.substr(0, slash)};
}

int syncDirectory(const HostPath& directory) {
    const int descriptor = files().open(directory, O_RDONLY | O_DIRECTORY, 0);
    if (descriptor < 0) return -1;
    const int result = files().sync(descriptor);
    const int error = errno;
    files().close(descriptor);
    errno = error;
    return result;
}

}  // namespace platform
