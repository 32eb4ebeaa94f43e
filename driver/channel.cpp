#include "driver/channel.h"

#include "driver/dai_api.h"
#include "platform/device.h"

#include <cerrno>

DriverChannel ioctlDesc;
DriverChannel SetupIoctlDesc;

// Creates the device before the channel, so that it still exists when the channel is closed at the end of the
// program.
DriverChannel::DriverChannel() {
    platform::device();
}

bool DriverChannel::open(int oflag) {
    close();
    int opened = 0;
    if (dai_open(0, oflag, opened) != 0) return false;
    descriptor_ = opened;
    return true;
}

void DriverChannel::close() {
    dai_close(0, descriptor_);
    descriptor_ = 0;
}

int DriverChannel::request(std::span<std::uint8_t> message) {
    errno = 0;
    const int result = dai_req(descriptor_, message);
    if (result != 0 && errno == ETIME) ++timeouts_;
    return result;
}
