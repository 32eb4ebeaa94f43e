// What requests do to the services of the simulated driver, and what it refuses. Adapters and instances count
// from 0 and must exist. A refused request changes nothing.
#pragma once

#include "sim/resp.h"
#include "sim/state.h"

namespace sim {

// The VCIs that PVCs can have. Lower ones are those of the standards (signalling, ILMI), higher ones those of
// the simulator's switched circuits. Windows show four digits at most.
constexpr std::uint16_t firstPvcVci = 32, lastPvcVci = 4999;

// Starts or restarts the client with this configuration and without PVCs, which are added one by one.
Resp startLec(State& state, int adapter, int lec, const AtmLEC& config);
Resp startIp(State& state, int adapter, const AtmIP1577& config);

// A running server must be stopped first.
Resp startLes(State& state, int adapter, int les, const AtmLES& config);

// Stops the instance, running or not, and removes its PVCs; an LECS loses its configuration, too.
Resp stop(State& state, Service service, int adapter, int unit);

// Loads the configuration into a stopped LECS, which then has no mappings.
Resp loadLecs(State& state, int adapter, const AtmLECS& config);
Resp goLecs(State& state, int adapter);  // starts or restarts

// The mappings of an LECS that has a configuration. A client has at most one that was added. Deletion needs
// only the client's address, and includes what the LECS has learned.
Resp addMapping(State& state, int adapter, const Mapping& mapping);
Resp deleteMapping(State& state, int adapter, const esiSelector& client);

// The PVCs of a running client: AtmBridgedPvc of an LEC, AtmRoutedPvc of the Classical IP client (unit 0). A
// VCI is unique on its adapter, an address within its client. A change applies to the PVC with the same VCI
// or, if there is none, to the one with the same address. A deletion must match both.
template <class Pvc> Resp addPvc(State& state, int adapter, int unit, const Pvc& pvc);
template <class Pvc> Resp changePvc(State& state, int adapter, int unit, const Pvc& pvc);
template <class Pvc> Resp deletePvc(State& state, int adapter, int unit, const Pvc& pvc);

Resp switchTrace(State& state, std::uint8_t code, std::uint8_t on);

// Starts what the configuration of a new state enables. List entries that a request could not have added are
// left out and noted in `leftOut`.
void load(State& state);

}  // namespace sim
