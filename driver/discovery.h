// Finds the adapters that the driver reports, and derives the MAC addresses of their services.
#pragma once

#include "driver/dai_io.h"
#include "model/tvdatbuf.h"

#include <string>
#include <vector>

struct FoundAdapter {
    int index;         // 0 to 3: index in atmDevices, and Link in requests
    std::string line;  // line of the adapter list; empty if the driver did not report the MAC address
};

// What the driver says of itself and its adapters.
struct Discovery {
    std::string version;                 // of the driver; empty if it did not say
    std::vector<FoundAdapter> adapters;  // in ascending order
    bool complete = false;               // the driver has answered, be it with refusals
};

// Asks the driver for its version and its adapters; stores the MAC addresses of their LAN Emulation Clients
// and Classical IP clients in `devices`. After the first request for which nobody is there or nobody answers
// no further one is sent.
Discovery discoverAdapters(aalInfo& query, AtmDevices& devices);

// A LAN Emulation Client's address is the adapter's with 0 to 3 added to the last byte; for the Classical IP
// client 4 is added. The addition wraps within the byte.
void deriveMacAddresses(int adapter, const macAddress& address, AtmDevices& devices);
