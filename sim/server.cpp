#include "sim/server.h"

#include "platform/index.h"

#include <algorithm>
#include <cerrno>
#include <poll.h>
#include <unistd.h>

namespace sim {

namespace {

constexpr std::size_t mostPending = 1000;  // late answers on one connection, before it is closed
constexpr std::size_t turn = 64;           // packets of one connection before the others have theirs
constexpr int retryAfter = 100;            // milliseconds until another descriptor may be free

bool wouldBlock() {
    return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
}

}  // namespace

std::string Server::claim() {
    // Anybody may ask the driver; what they may do is decided by who they are. Commands are for the owner.
    std::string reason = deviceNode_.claim(platform::hostPath(devicePath), SOCK_SEQPACKET, 0666);
    if (reason.empty()) reason = commandNode_.claim(platform::hostPath(commandPath), SOCK_STREAM, 0600);
    return reason;
}

Present Server::present(uid_t user) const {
    Present result;
    const auto count = [&](const Link& link) {
        result.ofUser += link.user == user;
        result.ofStrangers += !isPrivileged(link.user);
    };
    std::for_each(deviceLinks_.begin(), deviceLinks_.end(), count);
    std::for_each(commandLinks_.begin(), commandLinks_.end(), count);
    return result;
}

// False when nobody else waits, or nobody else can be taken.
bool Server::acceptFrom(const Node& node) {
    Link link;
    link.socket = Handle(::accept4(node.descriptor(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
    if (link.socket.get() < 0) {
        if (errno == EMFILE || errno == ENFILE || errno == ENOBUFS || errno == ENOMEM) noDescriptors_ = true;
        return errno == ECONNABORTED;
    }
    ucred peer{};
    socklen_t length = sizeof peer;
    if (::getsockopt(link.socket.get(), SOL_SOCKET, SO_PEERCRED, &peer, &length) != 0) return true;
    const bool forCommand = &node == &commandNode_;
    const Entry entry = quota_.admit(peer.uid, forCommand, present(peer.uid));
    if (entry == Entry::HungUp) return true;
    link.user = peer.uid;
    link.refused = entry == Entry::Refused;
    if (forCommand) {
        commandLinks_.push_back({std::move(link), {}, {}, false});
    } else {
        const Session session{
            ++lastNumber_, false, link.refused, {.privileged = isPrivileged(peer.uid), .writer = false}};
        deviceLinks_.push_back({std::move(link), session, {}, false});
    }
    return true;
}

void Server::readDevice(DeviceLink& link) {
    std::vector<std::uint8_t>& packet = packet_;
    for (std::size_t i = 0; i < turn && !link.blocked; ++i) {
        const ssize_t length = ::recv(link.socket.get(), packet.data(), packet.size(), MSG_TRUNC);
        if (length < 0 && wouldBlock()) return;
        // The end of the connection, an empty packet, or one larger than any message.
        if (length <= 0 || asIndex(length) > packet.size()) {
            link.gone = true;
            return;
        }
        Outgoing out = exchange_.handle(link.session, ConstBytes(packet).first(asIndex(length)));
        if (out.hangUp || link.pending.size() >= mostPending) {
            link.gone = true;
            return;
        }
        if (out.packet.empty()) continue;
        const Real::time_point now = Real::now();
        link.pending.push_back({std::move(out.packet), now + out.delay});
        sendDue(link, now);
        if (link.gone) return;
    }
}

void Server::sendDue(DeviceLink& link, Real::time_point now) {
    link.blocked = false;
    for (auto it = link.pending.begin(); it != link.pending.end();) {
        if (it->due > now) {
            ++it;
            continue;
        }
        if (::send(link.socket.get(), it->packet.data(), it->packet.size(), MSG_NOSIGNAL) < 0) {
            link.blocked = wouldBlock();
            link.gone = !link.blocked;
            return;
        }
        it = link.pending.erase(it);
    }
}

// A command is its words, each followed by NUL, up to the end of what the peer sends.
void Server::readCommand(CommandLink& link) {
    char part[4096];
    for (;;) {
        const ssize_t length = ::recv(link.socket.get(), part, sizeof part, 0);
        if (length < 0 && wouldBlock()) return;
        if (length < 0 || link.input.size() > longestCommand) {
            link.gone = true;
            return;
        }
        if (length == 0) break;
        link.input.append(part, asIndex(length));
    }
    std::vector<std::string> words;
    for (std::size_t at = 0, end; (end = link.input.find('\0', at)) != std::string::npos; at = end + 1)
        words.push_back(link.input.substr(at, end - at));
    CommandReply reply =
        link.refused ? CommandReply::refusal("you have too many connections already") : commands_.run(words);
    quitting_ = quitting_ || reply.quit;
    link.output = (reply.ok ? "0" : "1") + reply.text;
    link.answering = true;
    writeCommand(link);
}

void Server::writeCommand(CommandLink& link) {
    while (!link.output.empty()) {
        const ssize_t length =
            ::send(link.socket.get(), link.output.data(), link.output.size(), MSG_NOSIGNAL);
        if (length < 0 && wouldBlock()) return;
        if (length < 0) break;
        link.output.erase(0, asIndex(length));
    }
    link.gone = true;
}

// Milliseconds until the next late answer is due; -1: nothing to wait for.
int Server::patience(Real::time_point now) const {
    int result = -1;
    for (const DeviceLink& link : deviceLinks_) {
        if (link.blocked) continue;
        for (const Pending& one : link.pending) {
            const auto left = std::chrono::ceil<std::chrono::milliseconds>(one.due - now).count();
            const int wait = static_cast<int>(std::clamp<std::int64_t>(left, 0, 1 << 30));
            result = result < 0 ? wait : std::min(result, wait);
        }
    }
    return result;
}

bool Server::run(int stopDescriptor) {
    while (!quitting_) {
        std::vector<pollfd> watched{{stopDescriptor, POLLIN, 0}};
        // Without a descriptor for them, those who come wait in the listening queues for a while.
        watched.push_back({noDescriptors_ ? -1 : deviceNode_.descriptor(), POLLIN, 0});
        watched.push_back({noDescriptors_ ? -1 : commandNode_.descriptor(), POLLIN, 0});
        for (const DeviceLink& link : deviceLinks_)
            watched.push_back({link.socket.get(), short(link.blocked ? POLLOUT : POLLIN), 0});
        for (const CommandLink& link : commandLinks_)
            watched.push_back({link.socket.get(), short(link.answering ? POLLOUT : POLLIN), 0});
        int time = patience(Real::now());
        if (std::exchange(noDescriptors_, false)) time = time < 0 ? retryAfter : std::min(time, retryAfter);
        if (::poll(watched.data(), watched.size(), time) < 0 && errno != EINTR) return false;
        if (watched[0].revents) return true;

        std::size_t index = 3;
        const Real::time_point now = Real::now();
        for (DeviceLink& link : deviceLinks_) {
            const short seen = watched[index++].revents;
            sendDue(link, now);
            if (!link.gone && seen && !link.blocked) readDevice(link);
        }
        for (CommandLink& link : commandLinks_) {
            if (!watched[index++].revents) continue;
            if (link.answering)
                writeCommand(link);
            else
                readCommand(link);
        }
        deviceLinks_.remove_if([](const DeviceLink& link) { return link.gone; });
        commandLinks_.remove_if([](const CommandLink& link) { return link.gone; });
        // All that wait: a user who connects without end must not keep the others in the queue.
        for (std::size_t i = 0; watched[1].revents && i < turn && acceptFrom(deviceNode_);) ++i;
        for (std::size_t i = 0; watched[2].revents && i < turn && acceptFrom(commandNode_);) ++i;
    }
    return true;
}

}  // namespace sim
