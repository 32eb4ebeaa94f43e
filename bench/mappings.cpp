// bench_mappings PAIRS: a configuration server that is restarted with 8 servers of 500 clients each, from the
// first request to the last answer, beside the same messages sent without the layers above the device.
// Needs a simulator in TARVOLIN_ROOT. Prints microseconds per mapping (medians) and the median of the ratios.
#include "bench/recorder.h"
#include "change/restart.h"
#include "driver/dai_api.h"
#include "model/settings.h"
#include "model/tvdatbuf.h"
#include "platform/user.h"

#include <cstdlib>
#include <fcntl.h>
#include <fmt/core.h>
#include <vector>

namespace {

constexpr std::size_t clientsPerServer = 500, mappings = lesCount * clientsPerServer;

// One restart of the configuration server.
void restart() {
    atmDevices.lecs[0].enabled = 1;
    ServiceSet changed;
    changed.lecs = true;
    ChangeRecord record;
    DriverChannel channel;
    channel.open(O_RDWR);
    DriverPhase phase(channel, DriverUse::told, record);
    restartServices(0, atmDevices, changed, phase, channel);
}

double timed(std::vector<Message> messages) {  // a copy: the answers replace them
    const int descriptor = platform::device().open(devbase, O_RDWR);
    const double begin = milliseconds();
    replay(descriptor, messages);
    const double end = milliseconds();
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

    constexpr double microseconds = 1000.0 / mappings;  // of a mapping, from milliseconds of all
    Pairs pairs;
    for (int pair = 0; pair < std::atoi(argv[1]); ++pair) {
        const double begin = milliseconds();
        restart();
        const double figure = milliseconds() - begin;
        pairs.add(figure * microseconds, timed(messages) * microseconds);
    }
    pairs.print("mappings");
}
