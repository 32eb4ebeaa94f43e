// Where something stands: "adapter1", "adapter1/lec2", "adapter1/lec2.l3Mtu", "adapter1/lec2.pvcs[1]".
// Adapters and instances count from 1, entries from 0.
#pragma once

#include "change/services.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

// A service of an adapter: its place in namedServices(adapter).
struct ServiceId {
    int adapter = 0;  // from 0
    std::size_t service = 0;

    const ServiceName& name() const { return namedServices(adapter)[service].name; }
    bool operator==(const ServiceId&) const = default;
};

// Places of the first of several.
constexpr std::size_t firstLec = 1, firstLes = firstLec + lecCount;

// Failure::notThere for an adapter or an instance that cannot be, Failure::usage for any other text.
ServiceId readService(std::string_view path);

// A service that has this list ("pvcs"). Failure::usage: services of its kind have none, whatever its number.
// Otherwise as readService().
ServiceId readListService(const std::string& path, std::string_view list);

// Of an adapter all services, of a service itself.
std::vector<ServiceId> readPath(std::string_view path);
// All of an adapter, in the order in which they are shown.
std::vector<ServiceId> servicesOf(int adapter);

struct KeyPath {
    ServiceId service;
    std::string key;
    std::optional<std::size_t> entry;  // of a list

    std::string text() const;
};
// A setting or list. Failure::usage: services of its kind have none of that name, whatever their number.
// Otherwise as readService().
KeyPath readKeyPath(std::string_view text);

// Calls visit(record) with a function from a device table to the record of the service.
template <class Visit> void withRecord(const ServiceId& id, Visit visit) {
    std::size_t place = 0;
    forEachService(id.adapter, [&](const ServiceName&, auto record, const std::string&, auto) {
        if (place++ == id.service) visit(record);
    });
}
