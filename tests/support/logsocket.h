// A log daemon's socket below a private root, which reads what the program sends to syslog.
#pragma once

#include "tests/support/temproot.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

class LogSocket {
  public:
    explicit LogSocket(const TempRoot& root) : socket_(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, root.at("/dev/log").c_str(), sizeof address.sun_path - 1);
        if (::bind(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
            ADD_FAILURE() << std::strerror(errno);
    }
    ~LogSocket() { ::close(socket_); }
    LogSocket(const LogSocket&) = delete;
    LogSocket& operator=(const LogSocket&) = delete;

    // The datagrams that have come since the last call.
    std::vector<std::string> take() const {
        std::vector<std::string> result;
        std::array<char, 1U << 14> bytes;
        for (;;) {
            const ssize_t length = ::recv(socket_, bytes.data(), bytes.size(), MSG_DONTWAIT);
            if (length < 0) return result;
            result.emplace_back(bytes.data(), static_cast<std::size_t>(length));
        }
    }

    // The same without what stands before the text of a line.
    std::vector<std::string> takeLines() const {
        std::vector<std::string> lines = take();
        for (std::string& line : lines) line.erase(0, line.find("]: ") + 3);
        return lines;
    }

  private:
    int socket_;
};
