// What a benchmark does with the messages of the tool: keeps them, and sends them again without the layers
// above the device.
#pragma once

#include "bench/pairs.h"
#include "platform/device.h"

#include <string_view>
#include <vector>

struct Message {
    int command;
    std::vector<char> bytes;
};

// Passes everything on and keeps what was sent and how much came.
class Recorder : public platform::Device {
  public:
    int open(std::string_view path, int oflag) override { return real_.open(path, oflag); }
    int streamsIoctl(int descriptor, int request, platform::strioctl& block) override {
        messages.push_back({block.ic_cmd, {block.ic_dp, block.ic_dp + block.ic_len}});
        const int result = real_.streamsIoctl(descriptor, request, block);
        received += block.ic_len;
        return result;
    }
    int close(int descriptor) override { return real_.close(descriptor); }

    std::vector<Message> messages;
    long received = 0;

  private:
    platform::Device& real_ = platform::device();
};

inline void replay(int descriptor, std::vector<Message>& messages) {
    for (Message& message : messages) {
        platform::strioctl block{.ic_cmd = message.command,
                                 .ic_timout = 0,
                                 .ic_len = static_cast<int>(message.bytes.size()),
                                 .ic_dp = message.bytes.data()};
        platform::device().streamsIoctl(descriptor, platform::I_STR, block);
    }
}
