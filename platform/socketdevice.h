// The device calls carried over a Unix-domain socket (SOCK_SEQPACKET), one packet each way per call. All
// integers are 32-bit in host byte order, without padding:
//
//     open    -> op 1, id, oflag                         <- id, error
//     ioctl   -> op 2, id, cmd, timeout, len, message    <- id, error, rval, len, message
//
// `id` counts up per connection; an answer with another id is late and dropped, and does not prolong the
// wait. `error` is 0 or an errno value.
#pragma once

#include "platform/device.h"

#include <chrono>
#include <cstddef>
#include <cstdint>

namespace platform {

constexpr std::int32_t opOpen = 1;
constexpr std::int32_t opIoctl = 2;
constexpr std::size_t maxSocketMessage = 65535;  // what a 16-bit message size can say

// One connection. Errors as with the system's calls: -1 and errno, besides the driver's own
// ETIME (no answer in time; the connection stays usable), ENXIO (the peer closed it, now and on every later
// call), EPROTO (an answer that breaks the rules; the message is left as it was).
class SocketChannel {
  public:
    // The timeout of calls that do not give one: the default of a stream.
    static constexpr std::chrono::seconds defaultTimeout{15};

    // Connects and makes the open exchange. Returns the descriptor or -1.
    int open(const HostPath& path, int oflag);
    int ioctl(strioctl& block);
    int close();

  private:
    using Clock = std::chrono::steady_clock;

    bool send(const void* packet, std::size_t length, Clock::time_point deadline);
    // The length of the answer to the call `id_`, which `packet` then holds, or -1.
    long receive(void* packet, std::size_t room, Clock::time_point deadline);
    bool waitFor(short events, Clock::time_point deadline);
    bool hungUp();

    int descriptor_ = -1;
    std::int32_t id_ = 0;
    bool gone_ = false;
};

}  // namespace platform
