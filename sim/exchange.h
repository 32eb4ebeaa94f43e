// The exchange on one connection: a packet in, what goes back out. Knows nothing of sockets.
//
//     open    op 1, id, oflag                         ->  id, error
//     ioctl   op 2, id, cmd, timeout, len, message    ->  id, error, rval, len, message
//
// All integers are 32-bit in host byte order. A packet that is none of these ends the connection.
#pragma once

#include "sim/answer.h"
#include "sim/faults.h"
#include "sim/requestlog.h"

#include <chrono>
#include <vector>

namespace sim {

constexpr std::size_t maxPacket = 5 * sizeof(std::int32_t) + 65535;  // a message size has 16 bits

// The state of one connection.
struct Session {
    int number = 0;
    bool opened = false;
    bool refused = false;  // the user has too many connections: it cannot be opened
    Caller caller;
};

struct Outgoing {
    std::vector<std::uint8_t> packet;  // empty: nothing is sent
    std::chrono::milliseconds delay{0};
    bool hangUp = false;  // close the connection instead
};

class Exchange {
  public:
    Exchange(State& state, Faults& faults, RequestLog& log) : state_(state), faults_(faults), log_(log) {}

    Outgoing handle(Session& session, ConstBytes packet);

  private:
    Outgoing open(Session& session, std::int32_t id, std::int32_t flags);
    Outgoing ioctl(Session& session, std::int32_t id, std::int32_t command, ConstBytes message);

    State& state_;
    Faults& faults_;
    RequestLog& log_;
};

}  // namespace sim
