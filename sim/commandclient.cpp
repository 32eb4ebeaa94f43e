#include "sim/commandclient.h"

#include "platform/index.h"
#include "platform/safetext.h"
#include "sim/commands.h"
#include "sim/nodes.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fmt/core.h>
#include <sys/time.h>

namespace sim {

namespace {

// A simulator answers at once; one that was stopped must not hang a script.
constexpr timeval longest{30, 0};

int complain(const std::string& reason) {
    fmt::print(stderr, "tvsim ctl: {}\n", reason);
    return 1;
}

}  // namespace

int sendCommand(const std::vector<std::string>& words) {
    if (words.empty() || words[0] == "help" || words[0] == "--help" || words[0] == "-h") {
        const std::string text = commandHelp(words.size() > 1 ? words[1] : "");
        if (text.empty())
            return complain(
                fmt::format("no command \"{}\"; see \"tvsim ctl help\"", platform::escaped(words[1])));
        fmt::print("{}", text);
        return 0;
    }
    const platform::HostPath path = platform::hostPath(commandPath);
    const std::string root = platform::rootDirectory();
    const Handle socket = connectTo(path, SOCK_STREAM);
    if (socket.get() < 0)
        return complain(fmt::format("no simulator answers at {} ({}); {}", path.text, std::strerror(errno),
                                    root.empty() ? "no root directory is set (TARVOLIN_ROOT)"
                                                 : "the root directory is " + root));
    ::setsockopt(socket.get(), SOL_SOCKET, SO_RCVTIMEO, &longest, sizeof longest);
    ::setsockopt(socket.get(), SOL_SOCKET, SO_SNDTIMEO, &longest, sizeof longest);

    std::string command;
    for (const std::string& word : words) command.append(word).push_back('\0');
    if (command.size() > longestCommand)
        return complain(
            fmt::format("a command has at most {} bytes, this one has {}", longestCommand, command.size()));
    for (std::string_view left = command; !left.empty();) {
        const ssize_t length = ::send(socket.get(), left.data(), left.size(), MSG_NOSIGNAL);
        if (length < 0) return complain(fmt::format("{}: {}", path.text, std::strerror(errno)));
        left.remove_prefix(asIndex(length));
    }
    ::shutdown(socket.get(), SHUT_WR);

    std::string reply;
    char part[4096];
    ssize_t length = 0;
    while ((length = ::recv(socket.get(), part, sizeof part, 0)) > 0) reply.append(part, asIndex(length));
    if (length < 0 || reply.empty())
        return complain(fmt::format("{}: {}", path.text, length < 0 ? std::strerror(errno) : "no answer"));
    if (reply[0] != '0') return complain(reply.substr(1));
    fmt::print("{}", reply.substr(1));
    return 0;
}

}  // namespace sim
