#include "platform/device.h"

#include "platform/socketdevice.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <map>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace platform {

namespace {

WaitLimit::Clock::time_point waitLimit = WaitLimit::Clock::time_point::max();

// The timeout of a call in the kernel, whole seconds: none of less than one.
int secondsLeft() {
    constexpr long most = 15;  // the default of a stream
    if (waitLimit == WaitLimit::Clock::time_point::max()) return 0;
    const auto left = std::chrono::ceil<std::chrono::seconds>(waitLimit - WaitLimit::Clock::now());
    return static_cast<int>(std::clamp<long>(left.count(), 1, most));
}

class SystemDevice : public Device {
  public:
    int open(std::string_view path, int oflag) override {
        const HostPath place = hostPath(path);
        struct stat status {};
        if (::stat(place.c_str(), &status) != 0) return -1;
        if (S_ISSOCK(status.st_mode)) {
            SocketChannel channel;
            const int descriptor = notZero([&] { return channel.open(place, oflag); });
            if (descriptor >= 0) channels_.insert_or_assign(descriptor, channel);
            return descriptor;
        }
        if (!S_ISCHR(status.st_mode)) {
            errno = ENODEV;
            return -1;
        }
        return notZero([&] { return ::open(place.c_str(), oflag | O_CLOEXEC); });
    }

    int streamsIoctl(int descriptor, int request, strioctl& block) override {
        if (WaitLimit::passed()) {
            errno = ETIME;
            return -1;
        }
        const auto channel = channels_.find(descriptor);
        if (channel == channels_.end()) {
            if (block.ic_timout == 0) block.ic_timout = secondsLeft();
            return ::ioctl(descriptor, static_cast<unsigned long>(request), &block);
        }
        if (request == I_STR) return channel->second.ioctl(block);
        errno = EINVAL;
        return -1;
    }

    int close(int descriptor) override {
        const auto channel = channels_.find(descriptor);
        if (channel == channels_.end()) return ::close(descriptor);
        const int result = channel->second.close();
        channels_.erase(channel);
        return result;
    }

    bool hungUp(int descriptor) override {
        pollfd state{descriptor, POLLRDHUP, 0};
        return ::poll(&state, 1, 0) > 0 && (state.revents & (POLLHUP | POLLRDHUP | POLLERR | POLLNVAL));
    }

  private:
    // Runs `open` so that it does not get descriptor 0, which is free if the program was started without
    // standard input.
    template <typename Open> static int notZero(Open open) {
        const int probe = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
        const int descriptor = open();
        const int error = errno;
        if (probe >= 0) ::close(probe);
        errno = error;
        return descriptor;
    }

    std::map<int, SocketChannel> channels_;
};

Device* current = nullptr;

constexpr WhileWaiting::Clock::time_point never = WhileWaiting::Clock::time_point::max();
WhileWaiting::Clock::time_point actionAt = never;
std::function<void()> waitingAction;

}  // namespace

void WaitLimit::set(Clock::time_point moment) {
    waitLimit = moment;
}

WaitLimit::Clock::time_point WaitLimit::moment() {
    return waitLimit;
}

WhileWaiting::WhileWaiting(Clock::time_point at, std::function<void()> action) {
    actionAt = at;
    waitingAction = std::move(action);
}

WhileWaiting::~WhileWaiting() {
    actionAt = never;
    waitingAction = nullptr;
}

WhileWaiting::Clock::time_point WhileWaiting::next() {
    return actionAt;
}

void WhileWaiting::act() {
    actionAt = never;
    waitingAction();
}

Device& device() {
    static SystemDevice system;
    return current ? *current : system;
}

Device* setDevice(Device* other) {
    Device* before = current;
    current = other;
    return before;
}

}  // namespace platform
