// Which adapters the driver reports, and the MAC addresses that follow from theirs.
#pragma once

#include "driver/dai_io.h"
#include "model/ui_types.h"

#include <string>
#include <vector>

struct FoundAdapter {
    int index;         // 0 to 3: its place in atmDevices and in every request
    std::string line;  // of the adapter list; empty when the driver would not tell its MAC address
};

// Asks the driver for its adapters, in ascending number; the addresses of each adapter's LAN Emulation
// Clients and Classical IP client are put into atmDevices. Empty when the driver does not answer.
std::vector<FoundAdapter> discoverAdapters(aalInfo& query);

// The LAN Emulation Clients take the adapter's address with 0 to 3 added to its last byte, the Classical IP
// client with 4 added. The addition wraps within the byte.
void deriveMacAddresses(int adapter, const macAddress& address);
