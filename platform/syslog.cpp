#include "platform/syslog.h"

#include "platform/debuglog.h"
#include "platform/root.h"
#include "platform/wallclock.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <fmt/format.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace platform {

namespace {

constexpr int facility = 10 << 3;      // LOG_AUTHPRIV
constexpr std::size_t longest = 2000;  // the longest line for syslog that every daemon takes is about 2 KiB
// A living daemon empties its queue within milliseconds; windows stand still meanwhile.
constexpr std::chrono::milliseconds patience{200};

bool stalled = false;
unsigned long lost = 0;

int connectToDaemon() {
    const HostPath path = hostPath("/dev/log");
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.text.size() >= sizeof address.sun_path) {
        errno = ENAMETOOLONG;
        return -1;
    }
    std::memcpy(address.sun_path, path.text.data(), path.text.size());
    const int descriptor = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (descriptor < 0) return -1;
    if (::connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0)
        return descriptor;
    const int error = errno;
    ::close(descriptor);
    errno = error;
    return -1;
}

// Room in the daemon's queue before the deadline. A signal ends the wait as the deadline does.
bool waitForRoom(int descriptor, std::chrono::steady_clock::time_point deadline) {
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
    pollfd watched{descriptor, POLLOUT, 0};
    const bool ready = left.count() > 0 && ::poll(&watched, 1, static_cast<int>(left.count())) > 0;
    if (!ready) errno = EAGAIN;
    return ready;
}

bool send(std::string_view message) {
    const auto deadline = std::chrono::steady_clock::now() + (stalled ? patience.zero() : patience);
    const int descriptor = connectToDaemon();
    if (descriptor < 0) return false;
    bool sent = false;
    do {
        sent = ::send(descriptor, message.data(), message.size(), MSG_NOSIGNAL) >= 0;
    } while (!sent && (errno == EINTR || (errno == EAGAIN && waitForRoom(descriptor, deadline))));
    const int error = errno;
    stalled = !sent && error == EAGAIN;
    ::close(descriptor);
    errno = error;
    return sent;
}

}  // namespace

bool sendSyslog(LogLevel level, std::string_view line) {
    std::string message = fmt::format("<{}>{} tarvolin[{}]: {}", facility | static_cast<int>(level),
                                      syslogTime(std::time(nullptr)), ::getpid(), line.substr(0, longest));
    std::ranges::replace_if(
        message, [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7f'; }, '?');
    if (send(message)) return true;
    ++lost;
    tvlog << "syslog: " << std::strerror(errno) << ", line lost (" << lost
          << "): " << message.substr(message.find("]: ") + 3) << std::endl;
    return false;
}

unsigned long lostSyslogLines() {
    return lost;
}

}  // namespace platform
