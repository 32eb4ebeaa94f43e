// The requests that bring changed services up to date in the running driver, in their order.
#pragma once

#include "change/driverphase.h"

// Restarts or stops each changed service with the settings in `devices`, and gives it its lists again: LEC 1
// to 4, LES 1 to 8, LECS, Classical IP. Signalling has no request. Each change is a line on the debug log,
// also without a driver.
void restartServices(int adapter, const AtmDevices& devices, const ServiceSet& changed, DriverPhase& phase,
                     DriverChannel& channel);
