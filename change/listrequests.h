// Edits of lists as requests: what a running service has of its list is brought in line without a restart.
#pragma once

#include "change/driverphase.h"

#include <span>

// Tells the driver how the lists of these adapters differ between two tables. Entries are compared whole. Of
// an adapter all that goes is sent before all that comes, since a VCI or a client may move from one service
// to another. Nothing is sent of a service that is off, or that `restarted` has: a restart takes its whole
// list along. The clients of the LESs are those of the LECS.
void sendListEdits(std::span<const int> adapters, const AtmDevices& before, const AtmDevices& after,
                   const ServiceSets& restarted, DriverPhase& phase, DriverChannel& channel);

// One edit of one list, of whatever service.
enum class ListEdit { add, modify, remove };
RequestResult sendListEdit(int adapter, std::size_t lec, ListEdit edit, const AtmBridgedPvc& pvc,
                           DriverPhase& phase, DriverChannel& channel);
RequestResult sendListEdit(int adapter, ListEdit edit, const AtmRoutedPvc& pvc, DriverPhase& phase,
                           DriverChannel& channel);
// `les`: whose client it becomes, or was. A client cannot be modified.
RequestResult sendListEdit(int adapter, std::size_t les, ListEdit edit, const esiSelector& client,
                           DriverPhase& phase, DriverChannel& channel);
