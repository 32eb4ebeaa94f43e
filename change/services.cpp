#include "change/services.h"

#include <vector>

namespace {

std::vector<NamedService> make(int adapter) {
    const std::string parent = fmt::format("/Adapter{}/", adapter);
    std::vector<NamedService> services{{signallingName(adapter), parent + "Signalling0"}};
    for (std::size_t m = 0; m < asIndex(lecCount); ++m)
        services.push_back({lecName(adapter, m), fmt::format("{}LEC{}", parent, m)});
    for (std::size_t m = 0; m < asIndex(lesCount); ++m)
        services.push_back({lesName(adapter, m), fmt::format("{}LES{}", parent, m)});
    services.push_back({lecsName(adapter), parent + "LECS0"});
    services.push_back({ipName(adapter), parent + "IP15770"});
    return services;
}

}  // namespace

std::span<const NamedService> namedServices(int adapter) {
    static const std::vector<std::vector<NamedService>> all = [] {
        std::vector<std::vector<NamedService>> services;
        services.reserve(adapterCount);
        for (int a = 0; a < adapterCount; ++a) services.push_back(make(a));
        return services;
    }();
    return all[asIndex(adapter)];
}

void copyAdapters(std::span<const int> adapters, const AtmDevices& from, AtmDevices& to) {
    forEachService(adapters, [&](const ServiceName&, auto record, const std::string&, auto) {
        record(to) = record(from);
    });
}
