// bench_mappings PAIRS: a configuration server that is restarted with 8 servers of 500 clients each, from the changed
// settings to the last answer, beside the same messages sent without the layers above the device. Needs a simulator
// in TARVOLIN_ROOT. Prints microseconds per mapping (medians) and the median of the ratios.
#include "app/apply.h"
#include "driver/dai_api.h"
#include "model/settings.h"
#include "model/tvdatbuf.h"
#include "platform/device.h"
#include "platform/user.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <fmt/core.h>
#include <vector>

namespace {

constexpr std::size_t clientsPerServer = 500, mappings = lesCount * clientsPerServer;

double now() {
    return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

struct Message {
    int command;
    std::vector<char> bytes;
};

// Passes everything on and keeps what was sent.
class Recorder : public platform::Device {
  public:
    int open(std::string_view path, int oflag) override { return real_.open(path, oflag); }
    int control(int descriptor, int request, platform::strioctl& block) override {
        messages.push_back({block.ic_cmd, {block.ic_dp, block.ic_dp + block.ic_len}});
        return real_.control(descriptor, request, block);
    }
    int close(int descriptor) override { return real_.close(descriptor); }

    std::vector<Message> messages;

  private:
    platform::Device& real_ = platform::device();
};

// One restart with other settings.
void restart() {
    MapDataToXferBuffer();
    lecsXferBuffer.enabled = 1;
    lecsXferBuffer.etherMtuPosition = static_cast<std::int16_t>(1 - lecsXferBuffer.etherMtuPosition);
    MapXferBufferToData([](const char*, const char*) {});
}

double replay(const std::vector<Message>& messages) {
    std::vector<Message> copies = messages;  // the answers replace them
    const int descriptor = platform::device().open(devbase, O_RDWR);
    const double begin = now();
    for (Message& message : copies) {
        platform::strioctl block{.ic_cmd = message.command,
                                 .ic_timout = 0,
                                 .ic_len = static_cast<int>(message.bytes.size()),
                                 .ic_dp = message.bytes.data()};
        platform::device().control(descriptor, platform::I_STR, block);
    }
    const double end = now();
    platform::device().close(descriptor);
    return end - begin;
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        fmt::print(stderr, "usage: bench_mappings PAIRS\n");
        return 2;
    }
    platform::pretendSuperUser(true);
    if (dai_open(0, 0, ioctlDesc) != 0) {
        fmt::print(stderr, "there is no driver\n");
        return 1;
    }
    unsigned number = 0;
    for (AtmLES& les : atmDevices.les[0])
        while (les.clients.size() < clientsPerServer) {
            ++number;
            les.clients.push_back(esiSelector({0, 0x20, 0x40, 1, static_cast<std::uint8_t>(number >> 8),
                                               static_cast<std::uint8_t>(number), 0}));
        }
    Recorder recorder;
    platform::Device* real = platform::setDevice(&recorder);
    restart();
    platform::setDevice(real);
    const std::vector<Message> messages = recorder.messages;
    if (messages.size() != mappings + 3) {  // stop, load, go
        fmt::print(stderr, "{} messages were sent\n", messages.size());
        return 1;
    }

    std::vector<double> figures, floors, ratios;
    for (int pair = 0; pair < std::atoi(argv[1]); ++pair) {
        const double begin = now();
        restart();
        figures.push_back((now() - begin) / mappings);
        floors.push_back(replay(messages) / mappings);
        ratios.push_back(figures.back() / floors.back());
    }
    fmt::print("mappings {:.2f} {:.2f} {:.2f}\n", median(figures), median(floors), median(ratios));
}
