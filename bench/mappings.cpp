// bench_mappings PAIRS: a configuration server that is restarted with 8 servers of 500 clients each, from the
// changed settings to the last answer, beside the same messages sent without the layers above the device.
// Needs a simulator in TARVOLIN_ROOT. Prints microseconds per mapping (medians) and the median of the ratios.
#include "app/apply.h"
#include "bench/recorder.h"
#include "driver/channel.h"
#include "driver/dai_api.h"
#include "model/settings.h"
#include "model/tvdatbuf.h"
#include "platform/user.h"

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

// One restart with other settings.
void restart() {
    MapDataToXferBuffer();
    lecsXferBuffer.enabled = 1;
    lecsXferBuffer.etherMtuPosition = static_cast<std::int16_t>(1 - lecsXferBuffer.etherMtuPosition);
    MapXferBufferToData([](const char*, const char*) {});
}

double timed(std::vector<Message> messages) {  // a copy: the answers replace them
    const int descriptor = platform::device().open(devbase, O_RDWR);
    const double begin = now();
    replay(descriptor, messages);
    const double end = now();
    platform::device().close(descriptor);
    return end - begin;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        fmt::print(stderr, "usage: bench_mappings PAIRS\n");
        return 2;
    }
    platform::pretendSuperUser(true);
    if (!ioctlDesc.open(O_RDONLY)) {
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
        floors.push_back(timed(messages) / mappings);
        ratios.push_back(figures.back() / floors.back());
    }
    fmt::print("mappings {:.2f} {:.2f} {:.2f}\n", median(figures), median(floors), median(ratios));
}
