#include "sim/nodes.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <fmt/core.h>
#include <sys/file.h>
#include <sys/un.h>
#include <unistd.h>

namespace sim {

namespace {

bool addressOf(const platform::HostPath& path, sockaddr_un& address) {
    address = {};
    address.sun_family = AF_UNIX;
    if (path.text.size() >= sizeof address.sun_path) {
        errno = ENAMETOOLONG;
        return false;
    }
    std::memcpy(address.sun_path, path.text.data(), path.text.size());
    return true;
}

std::string because(const platform::HostPath& path) {
    return fmt::format("{}: {}", path.text, std::strerror(errno));
}

const sockaddr* generic(const sockaddr_un& address) {
    return reinterpret_cast<const sockaddr*>(&address);
}

}  // namespace

Handle& Handle::operator=(Handle&& other) noexcept {
    if (this != &other) {
        if (descriptor_ >= 0) ::close(descriptor_);
        descriptor_ = other.release();
    }
    return *this;
}

Handle::~Handle() {
    if (descriptor_ >= 0) ::close(descriptor_);
}

Handle connectTo(const platform::HostPath& path, int type) {
    sockaddr_un address{};
    if (!addressOf(path, address)) return {};
    Handle socket(::socket(AF_UNIX, type | SOCK_CLOEXEC, 0));
    if (socket.get() < 0 || ::connect(socket.get(), generic(address), sizeof address) != 0) return {};
    return socket;
}

std::string Node::claim(const platform::HostPath& path, int type, mode_t mode) {
    sockaddr_un address{};
    if (!addressOf(path, address))
        return fmt::format("{}: the path is longer than the {} bytes of a socket address", path.text,
                           sizeof address.sun_path - 1);
    // Two simulators that start together must not both find the same stale node: the directory is the lock.
    const std::string directory = path.text.substr(0, path.text.rfind('/') + 1);
    const Handle lock(::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (lock.get() < 0) return because({directory});
    if (::flock(lock.get(), LOCK_EX) != 0) return because({directory});

    struct stat there {};
    if (::lstat(path.c_str(), &there) == 0) {
        if (!S_ISSOCK(there.st_mode))
            return fmt::format("{}: something that is no socket stands there", path.text);
        if (connectTo(path, type).get() >= 0)
            return fmt::format("{}: a driver already answers there", path.text);
        if (errno != ECONNREFUSED) return because(path);
        if (::unlink(path.c_str()) != 0) return because(path);
    }
    Handle socket(::socket(AF_UNIX, type | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (socket.get() < 0) return because(path);
    // No moment at which the node has wider rights than it should: the umask takes away all but the owner's.
    const mode_t before = ::umask(0177);
    const int bound = ::bind(socket.get(), generic(address), sizeof address);
    ::umask(before);
    if (bound != 0) return because(path);
    path_ = path;
    if (::lstat(path.c_str(), &identity_) != 0 || ::chmod(path.c_str(), mode) != 0 ||
        ::listen(socket.get(), SOMAXCONN) != 0)
        return because(path);
    socket_ = std::move(socket);
    return {};
}

Node::~Node() {
    struct stat now {};
    if (!path_.text.empty() && ::lstat(path_.c_str(), &now) == 0 && now.st_ino == identity_.st_ino &&
        now.st_dev == identity_.st_dev)
        ::unlink(path_.c_str());
}

}  // namespace sim
