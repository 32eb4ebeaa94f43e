// A client that speaks the exchange byte by byte, so that the simulator is checked against literal packets.
#pragma once

#include "tests/support/bytes.h"

#include <cstdint>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using RawBytes = ByteVector;

inline constexpr auto& hex = hexBytes;

inline RawBytes slice(const RawBytes& bytes, std::size_t offset, std::size_t width) {
    RawBytes part;
    for (std::size_t i = 0; i < width; ++i) part.push_back(bytes.at(offset + i));
    return part;
}

class RawClient {
  public:
    explicit RawClient(const std::string& node, std::optional<int> flags = 0) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        node.copy(address.sun_path, sizeof address.sun_path - 1);
        socket_ = ::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0);
        if (::connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
            openError = errno;
        else if (flags) {
            send(packet({1, ++id, *flags}));
            const auto reply = receive();
            openError = reply && reply->size() == 8 ? static_cast<int>(little(*reply, 4, 4)) : -1;
        }
    }
    ~RawClient() { ::close(socket_); }
    RawClient(const RawClient&) = delete;
    RawClient& operator=(const RawClient&) = delete;

    // False when the peer has gone, or, with MSG_DONTWAIT, when it would have to wait.
    bool send(const RawBytes& bytes, int flags = 0) const {
        return ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL | flags) >= 0;
    }

    // The next packet; empty when the peer has closed, nothing when none comes in time.
    std::optional<RawBytes> receive() const {
        pollfd watched{socket_, POLLIN, 0};
        if (::poll(&watched, 1, 20000) <= 0) return std::nullopt;
        RawBytes bytes(70000);
        const ssize_t length = ::recv(socket_, bytes.data(), bytes.size(), 0);
        bytes.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
        return bytes;
    }

    void ask(const RawBytes& message) {
        send(packet({2, ++id, 0x4c00, 0, static_cast<std::int32_t>(message.size())}, message));
    }

    struct Reply {
        int error = -1;    // -1: no proper reply
        RawBytes message;  // header and data
        int resp() const { return message.size() < 16 ? -1 : static_cast<int>(little(message, 14, 2)); }
        int rowM() const { return static_cast<int>(little(message, 10, 2)); }
        int nRow() const { return static_cast<int>(little(message, 12, 2)); }
        std::uint64_t number(std::size_t offset, std::size_t width) const {
            return little(message, 16 + offset, width);
        }
    };

    Reply call(const RawBytes& message) {
        ask(message);
        const auto reply = receive();
        if (!reply || reply->size() < 16 || little(*reply, 0, 4) != static_cast<std::uint64_t>(id) ||
            little(*reply, 8, 4) != 0 || little(*reply, 12, 4) != reply->size() - 16)
            return {};
        return {static_cast<int>(little(*reply, 4, 4)), slice(*reply, 16, reply->size() - 16)};
    }
    // A request of 16 header bytes in hexadecimal, with as much room behind as its Size says.
    Reply call(std::string_view header) {
        RawBytes message = hex(header);
        message.resize(little(message, 6, 2));
        return call(message);
    }

    int openError = 0;
    std::int32_t id = 0;

  private:
    int socket_ = -1;
};
