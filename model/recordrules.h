// What can be said of one record, whatever the others are. Inside the folder only.
#pragma once

#include "model/rules.h"

// Of enabled services. The key of the setting stands as the part of each finding, the path is empty.
std::vector<Finding> CheckRecord(const AtmLEC& client);
std::vector<Finding> CheckRecord(const AtmLES& server);
std::vector<Finding> CheckRecord(const AtmLECS& server);
std::vector<Finding> CheckRecord(const AtmIP1577& client);
std::vector<Finding> CheckRecord(const AtmSig& signalling);

// A client on PVCs only has none.
inline bool UsesServers(const AtmLEC& client) {
    return client.pvcOnly == 0;
}
