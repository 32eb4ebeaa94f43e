#include "tests/support/linkproxy.h"

#include "tests/support/xstreams.h"

#include <algorithm>
#include <array>
#include <deque>
#include <fmt/format.h>
#include <list>
#include <mutex>
#include <poll.h>
#include <stdexcept>
#include <string_view>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

sockaddr_un addressOf(int number) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string path = fmt::format("/tmp/.X11-unix/X{}", number);
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    return address;
}

int streamSocket() {
    return ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
}

template <class Call> bool on(int number, Call call, int descriptor) {
    const sockaddr_un address = addressOf(number);
    return call(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}

// What is on its way in one direction.
struct Lane {
    int from = -1, to = -1;
    std::deque<std::pair<Clock::time_point, std::string>> underWay;
    bool ended = false;

    bool take(std::chrono::milliseconds delay) {
        std::array<char, 65536> buffer{};
        const ssize_t length = ::recv(from, buffer.data(), buffer.size(), 0);
        if (length <= 0) return !(ended = true);
        underWay.emplace_back(Clock::now() + delay,
                              std::string(buffer.data(), static_cast<std::size_t>(length)));
        return true;
    }
    bool isDue() const { return !underWay.empty() && underWay.front().first <= Clock::now(); }
    std::string give() {
        std::string bytes = std::move(underWay.front().second);
        underWay.pop_front();
        for (std::size_t at = 0; at < bytes.size();) {
            const ssize_t sent = ::send(to, bytes.data() + at, bytes.size() - at, MSG_NOSIGNAL);
            if (sent <= 0) break;
            at += static_cast<std::size_t>(sent);
        }
        return bytes;
    }
};

struct Connection {
    Lane up, down;  // to the server, to the client
    XStreams streams;

    ~Connection() {
        ::close(up.from);
        ::close(up.to);
    }
    bool over() const { return (up.ended && up.underWay.empty()) || (down.ended && down.underWay.empty()); }
};

}  // namespace

struct LinkProxy::Relay {
    int server = 0, number = 0;
    std::chrono::milliseconds delay{};
    int listening = -1, stop = ::eventfd(0, EFD_CLOEXEC);
    std::list<Connection> connections;
    std::mutex mutex;
    Trips trips;
    std::size_t sent = 0;

    void accept() {
        const int client = ::accept4(listening, nullptr, nullptr, SOCK_CLOEXEC), up = streamSocket();
        if (client < 0 || !on(server, ::connect, up)) return;
        Connection& made = connections.emplace_back();
        made.up.from = made.down.to = client;
        made.up.to = made.down.from = up;
    }

    void heard(Connection& connection) {
        const std::string& bytes = connection.up.underWay.back().second;
        connection.streams.fromClient(bytes);
        const std::lock_guard lock(mutex);
        sent += bytes.size();
    }

    void pass(Connection& connection) {
        while (connection.up.isDue()) connection.up.give();
        while (connection.down.isDue()) {
            {
                const std::lock_guard lock(mutex);  // counted before the client goes on
                const std::string& bytes = connection.down.underWay.front().second;
                for (const std::string& name : connection.streams.toClient(bytes)) ++trips[name];
            }
            connection.down.give();
        }
    }

    int milliseconds() const {  // until something is due, -1: nothing is under way
        auto first = Clock::time_point::max();
        for (const Connection& connection : connections)
            for (const Lane* lane : {&connection.up, &connection.down})
                if (!lane->underWay.empty()) first = std::min(first, lane->underWay.front().first);
        if (first == Clock::time_point::max()) return -1;
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(first - Clock::now());
        return static_cast<int>(std::max<long>(0, left.count()));
    }

    void run() {
        for (;;) {
            std::vector<pollfd> waiting{{stop, POLLIN, 0}, {listening, POLLIN, 0}};
            for (const Connection& connection : connections)
                for (const Lane* lane : {&connection.up, &connection.down})
                    waiting.push_back({lane->ended ? -1 : lane->from, POLLIN, 0});
            ::poll(waiting.data(), waiting.size(), milliseconds());
            if (waiting[0].revents) return;
            std::size_t at = 2;
            for (Connection& connection : connections) {
                if (waiting[at++].revents && connection.up.take(delay)) heard(connection);
                if (waiting[at++].revents) connection.down.take(delay);
                pass(connection);
            }
            connections.remove_if([](const Connection& connection) { return connection.over(); });
            if (waiting[1].revents) accept();
        }
    }
};

LinkProxy::LinkProxy(const std::string& server, std::chrono::milliseconds delay)
    : relay_(std::make_unique<Relay>()) {
    constexpr int first = 4000, last = 4999;  // no server takes so high a number by itself
    relay_->server = std::stoi(server.substr(server.find(':') + 1));
    relay_->delay = delay;
    relay_->listening = streamSocket();
    int number = first;
    while (!on(number, ::bind, relay_->listening))
        if (++number > last) throw std::runtime_error("no display number is free");
    ::listen(relay_->listening, 16);
    relay_->number = number;
    display_ = fmt::format(":{}", number);
    thread_ = std::thread([this] { relay_->run(); });
}

LinkProxy::~LinkProxy() {
    ::eventfd_write(relay_->stop, 1);
    thread_.join();
    ::unlink(addressOf(relay_->number).sun_path);
    ::close(relay_->listening);
    ::close(relay_->stop);
}

LinkProxy::Trips LinkProxy::take() {
    const std::lock_guard lock(relay_->mutex);
    return std::exchange(relay_->trips, {});
}

std::size_t LinkProxy::takeSent() {
    const std::lock_guard lock(relay_->mutex);
    return std::exchange(relay_->sent, 0);
}
