// The driver, each request of which takes longer, and something that happens before one or each of them is
// passed on, or after each.
#pragma once

#include "platform/device.h"

class SlowDevice : public platform::Device {
  public:
    SlowDevice() { platform::setDevice(this); }
    ~SlowDevice() override { platform::setDevice(nullptr); }
    SlowDevice(const SlowDevice&) = delete;
    SlowDevice& operator=(const SlowDevice&) = delete;

    int open(std::string_view path, int oflag) override { return real_.open(path, oflag); }
    int close(int descriptor) override { return real_.close(descriptor); }
    bool hungUp(int descriptor) override { return real_.hungUp(descriptor); }
    int streamsIoctl(int descriptor, int request, platform::strioctl& block) override {
        ++requests;
        std::this_thread::sleep_for(delay);
        if (during && (at == 0 || requests == at)) during();
        const int result = real_.streamsIoctl(descriptor, request, block);
        if (after) after();
        return result;
    }

    std::chrono::milliseconds delay{0};
    int requests = 0;
    std::function<void()> during, after;
    int at = 0;  // the request during which that happens; 0: each

  private:
    platform::Device& real_ = platform::device();
};
