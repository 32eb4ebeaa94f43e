// Services of a configuration as trees, for whatever command shows them.
#pragma once

#include "ctl/paths.h"
#include "ctl/tree.h"

#include <functional>

// Of one service: its settings and its list, without one that is not known. `macKnown`: the driver has said
// the adapter's address.
Tree serviceTree(const ServiceId& service, const AtmDevices& devices, bool macKnown, bool listKnown = true);

// Of these services, by adapter: {"adapter1":{"lec2":{...}}}.
Tree configurationTree(std::span<const ServiceId> services, const AtmDevices& devices,
                       const std::function<bool(int adapter)>& macKnown,
                       const std::function<bool(const ServiceId& service)>& listKnown = {});

// "lec2" of adapter1/lec2, "adapter1" of both.
std::string shortName(const ServiceId& service);
std::string adapterName(int adapter);

// The complaint that the list in a file is not shown.
std::string leftOutMessage(const std::string& file);
