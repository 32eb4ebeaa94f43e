#include "platform/socketdevice.h"

#include "platform/inputsignal.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fmt/core.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <vector>

namespace platform {

namespace {

constexpr std::size_t replyHead = 4 * sizeof(std::int32_t);

std::int32_t intAt(const std::vector<char>& packet, std::size_t index) {
    std::int32_t value = 0;
    std::memcpy(&value, packet.data() + index * sizeof value, sizeof value);
    return value;
}

// In milliseconds, as poll() takes them.
int untilThen(std::chrono::steady_clock::time_point moment) {
    if (moment == std::chrono::steady_clock::time_point::max()) return -1;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(moment - std::chrono::steady_clock::now());
    return left.count() > 0 ? static_cast<int>(left.count()) : 0;
}

int failWith(int error) {
    errno = error;
    return -1;
}

}  // namespace

int SocketChannel::open(const HostPath& path, int oflag) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.text.size() >= sizeof address.sun_path) {
        fmt::print(stderr, "tarvolin: {}: the path is longer than the {} bytes of a socket address\n",
                   path.text, sizeof address.sun_path - 1);
        return failWith(ENAMETOOLONG);
    }
    std::memcpy(address.sun_path, path.text.data(), path.text.size());

    descriptor_ = ::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (descriptor_ < 0) return -1;
    const auto fail = [this](int error) {
        close();
        return failWith(error);
    };
    if (::connect(descriptor_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        return fail(errno == ECONNREFUSED ? ENXIO : errno);

    const Clock::time_point deadline = std::min(Clock::now() + defaultTimeout, WaitLimit::moment());
    const std::array<std::int32_t, 3> request{opOpen, ++id_, oflag};
    std::vector<char> answer(replyHead);
    if (!send(request.data(), sizeof request, deadline)) return fail(errno);
    const long length = receive(answer.data(), answer.size(), deadline);
    if (length < 0) return fail(errno);
    if (length != 2 * sizeof(std::int32_t) || intAt(answer, 1) < 0) return fail(EPROTO);
    if (const int error = intAt(answer, 1)) return fail(error);
    return descriptor_;
}

int SocketChannel::ioctl(strioctl& block) {
    if (gone_) return failWith(ENXIO);
    if (block.ic_len < 0 || static_cast<std::size_t>(block.ic_len) > maxSocketMessage)
        return failWith(EINVAL);
    const auto length = static_cast<std::size_t>(block.ic_len);
    const Clock::time_point own = block.ic_timout < 0   ? Clock::time_point::max()
                                  : block.ic_timout > 0 ? Clock::now() + std::chrono::seconds(block.ic_timout)
                                                        : Clock::now() + defaultTimeout;
    const Clock::time_point deadline = std::min(own, WaitLimit::moment());

    const std::array<std::int32_t, 5> head{opIoctl, ++id_, block.ic_cmd, block.ic_timout, block.ic_len};
    std::vector<char> packet(sizeof head + length);
    std::memcpy(packet.data(), head.data(), sizeof head);
    if (length) std::memcpy(packet.data() + sizeof head, block.ic_dp, length);
    if (!send(packet.data(), packet.size(), deadline)) return -1;

    packet.resize(replyHead + length);
    const long got = receive(packet.data(), packet.size(), deadline);
    if (got < 0) return -1;
    if (static_cast<std::size_t>(got) < replyHead) return failWith(EPROTO);
    const std::int32_t error = intAt(packet, 1), rval = intAt(packet, 2), size = intAt(packet, 3);
    const std::size_t carried = static_cast<std::size_t>(got) - replyHead;
    if (error < 0 || rval < 0 || size < 0 || static_cast<std::size_t>(size) != carried || carried > length)
        return failWith(EPROTO);
    if (error) return failWith(error);
    if (carried) std::memcpy(block.ic_dp, packet.data() + replyHead, carried);
    block.ic_len = size;
    return rval;
}

int SocketChannel::close() {
    const int result = descriptor_ < 0 ? 0 : ::close(descriptor_);
    descriptor_ = -1;
    return result;
}

bool SocketChannel::hungUp() {
    gone_ = true;
    errno = ENXIO;
    return false;
}

// A signal ends the wait with EINTR, as it ends a STREAMS ioctl: the program may have been asked to stop.
bool SocketChannel::waitFor(short events, Clock::time_point deadline) {
    for (;;) {
        const bool acting = WhileWaiting::next() < deadline;
        pollfd watched{descriptor_, events, 0};
        const int ready = ::poll(&watched, 1, untilThen(acting ? WhileWaiting::next() : deadline));
        if (ready < 0 && errno == EINTR && InputEndsWaits::goesOn()) continue;
        if (ready != 0) return ready > 0;
        if (!acting) break;
        WhileWaiting::act();
    }
    errno = ETIME;
    return false;
}

bool SocketChannel::send(const void* packet, std::size_t length, Clock::time_point deadline) {
    for (;;) {
        if (::send(descriptor_, packet, length, MSG_NOSIGNAL) >= 0) return true;
        if (errno == EPIPE || errno == ECONNRESET || errno == ENOTCONN) return hungUp();
        if (errno != EAGAIN && errno != EINTR) return false;
        if (!waitFor(POLLOUT, deadline)) return false;
    }
}

long SocketChannel::receive(void* packet, std::size_t room, Clock::time_point deadline) {
    for (;;) {
        if (!waitFor(POLLIN, deadline)) return -1;
        // MSG_TRUNC: the true length of a packet that is too long, so that it cannot pass for a whole one.
        const long length = ::recv(descriptor_, packet, room, MSG_TRUNC);
        if (length < 0 && (errno == EAGAIN || errno == EINTR)) continue;
        if (length < 0) return hungUp(), -1;
        if (length == 0) {
            pollfd state{descriptor_, POLLRDHUP, 0};
            if (::poll(&state, 1, 0) > 0 && (state.revents & (POLLHUP | POLLRDHUP))) return hungUp(), -1;
            return failWith(EPROTO);
        }
        if (length < static_cast<long>(sizeof id_)) return failWith(EPROTO);
        std::int32_t id = 0;
        std::memcpy(&id, packet, sizeof id);
        if (id != id_) {
            // Late ones that come without a pause never let waitFor() see the deadline.
            if (Clock::now() >= deadline) return failWith(ETIME);
            continue;
        }
        return static_cast<std::size_t>(length) > room ? failWith(EPROTO) : length;
    }
}

}  // namespace platform
