// What requests do to the services of the simulated driver, and what it refuses. Adapters and instances are
// from 0 and exist; whatever is refused leaves everything as it was.
#pragma once

#include "sim/resp.h"
#include "sim/state.h"

namespace sim {

// Below are the circuits of the standards (signalling, ILMI); above, the simulator's own switched circuits,
// so that neither ever takes the other's. Four digits at most, as windows show them.
constexpr std::uint16_t firstPvcVci = 32, lastPvcVci = 4999;

// Starts or restarts with this configuration; PVCs of before are gone, they are added one by one.
Resp startLec(State& state, int adapter, int lec, const AtmLEC& config);
Resp startIp(State& state, int adapter, const AtmIP1577& config);

// A running server must be stopped first.
Resp startLes(State& state, int adapter, int les, const AtmLES& config);

// Stops what runs, with its PVCs; an LECS loses its configuration too. Done as well when nothing runs.
Resp stop(State& state, Service service, int adapter, int unit);

// Into a stopped LECS, which then has no mappings.
Resp loadLecs(State& state, int adapter, const AtmLECS& config);
Resp goLecs(State& state, int adapter);  // starts or restarts

// Of an LECS that has a configuration. A client is mapped once, and removed by its address alone, also when
// the LECS only learned it.
Resp addMapping(State& state, int adapter, const Mapping& mapping);
Resp deleteMapping(State& state, int adapter, const esiSelector& client);

// PVCs of a running client, AtmBridgedPvc of an LEC and AtmRoutedPvc of the Classical IP client (unit 0). No
// two PVCs of an adapter share a VCI, no two of a client an address. A change is about the PVC with this VCI,
// or else the one to this address; a deletion names both.
template <class Pvc> Resp addPvc(State& state, int adapter, int unit, const Pvc& pvc);
template <class Pvc> Resp changePvc(State& state, int adapter, int unit, const Pvc& pvc);
template <class Pvc> Resp deletePvc(State& state, int adapter, int unit, const Pvc& pvc);

Resp switchTrace(State& state, std::uint8_t code, std::uint8_t on);

// Starts what the configuration of a new state enables. Entries of its lists that a request could not have
// added are left out, and said.
void load(State& state);

}  // namespace sim
