// The contents of the driver's tables: remote clients, clients of servers, mappings and virtual circuits.
//
// A table's own rows follow from the configuration, the state codes and the time. Further rows that a command
// asks for are computed from their numbers and not stored, so that 65,535 rows cost nothing.
#pragma once

#include "sim/state.h"

#include <vector>

namespace sim {

struct Peer {
    MacBytes mac{};
    std::uint8_t selector = 0;
    AtmBytes atm{};
    IpBytes ip{};
    std::uint16_t vci = 0;
    std::uint16_t vci2 = 0;  // the second circuit of an LES client (multicast send)
    std::uint16_t kind = 1;  // 1 switched, 0 permanent; LECS: 1 permanent, 2 temporary
    std::uint16_t state = 0;
    std::uint8_t les = 0;            // LECS: index of the server that the client is mapped to
    std::uint8_t encapsulation = 1;  // 1 LLC/SNAP, 0 Null
    Millis since = 0;
};

// The circuits of a client to its servers.
struct ServerCircuits {
    std::uint16_t controlDirect, controlDistribute, multicastSend, multicastForward;
};
ServerCircuits serverCircuits(int lec);

// The rows of one table at the present instant.
class Rows {
  public:
    Rows(const State& state, Rid table, int adapter, int unit);

    std::size_t count() const { return count_; }
    Peer row(std::size_t index) const;  // from 0

  private:
    Peer madeUp(std::size_t index) const;

    const State& state_;
    Rid table_;
    int adapter_, unit_;
    std::vector<Peer> own_;
    std::size_t count_;
};

// Packets on a circuit since it was set up; the same in every table that shows the circuit.
std::uint64_t circuitPackets(const State& state, int adapter, const Peer& peer, std::uint16_t vci, bool sent);

}  // namespace sim
