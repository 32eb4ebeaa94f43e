// The simulator's main loop: one poll() for both nodes and all connections.
#pragma once

#include "sim/commands.h"
#include "sim/exchange.h"
#include "sim/nodes.h"
#include "sim/quota.h"

#include <list>
#include <string>

namespace sim {

class Server {
  public:
    explicit Server(State& state) : state_(state) {}

    // Takes both nodes. Empty on success, else the reason.
    std::string claim();

    // Serves until `stopDescriptor` becomes readable or "quit" was answered. False when the loop itself
    // failed.
    bool run(int stopDescriptor);

  private:
    using Real = std::chrono::steady_clock;
    struct Pending {
        std::vector<std::uint8_t> packet;
        Real::time_point due;
    };
    struct Link {
        Handle socket;
        uid_t user = 0;
        bool refused = false;  // the user has too many connections
        bool gone = false;
    };
    struct DeviceLink : Link {
        Session session;
        std::list<Pending> pending;
        bool blocked = false;  // the peer does not read: wait until it does, and read nothing from it
    };
    struct CommandLink : Link {
        std::string input, output;
        bool answering = false;
    };

    bool acceptFrom(const Node& node);
    Present present(uid_t user) const;
    void readDevice(DeviceLink& link);
    void sendDue(DeviceLink& link, Real::time_point now);
    void readCommand(CommandLink& link);
    void writeCommand(CommandLink& link);
    int patience(Real::time_point now) const;

    State& state_;
    Faults faults_;
    RequestLog log_;
    Exchange exchange_{state_, faults_, log_};
    Commands commands_{state_, faults_, log_};
    const Quota quota_;
    Node deviceNode_, commandNode_;
    std::vector<std::uint8_t> packet_ = std::vector<std::uint8_t>(maxPacket);  // the one being read
    std::list<DeviceLink> deviceLinks_;
    std::list<CommandLink> commandLinks_;
    int lastNumber_ = 0;
    bool noDescriptors_ = false;  // the last connection could not be taken
    bool quitting_ = false;
};

}  // namespace sim
