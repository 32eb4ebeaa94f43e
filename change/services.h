// The services of an adapter, one after the other in the order in which they are changed and saved.
#pragma once

#include "model/tvdatbuf.h"
#include "platform/index.h"

#include <algorithm>
#include <array>
#include <bitset>
#include <fmt/format.h>
#include <span>
#include <string>

// What people and scripts call a service. Adapters and instances count from 1 there.
struct ServiceName {
    std::string path;   // "adapter1/lec2"
    std::string words;  // "LEC 2"
};

inline ServiceName lecName(int adapter, std::size_t lec) {
    return {fmt::format("adapter{}/lec{}", adapter + 1, lec + 1), fmt::format("LEC {}", lec + 1)};
}
inline ServiceName lesName(int adapter, std::size_t les) {
    return {fmt::format("adapter{}/les{}", adapter + 1, les + 1), fmt::format("LES {}", les + 1)};
}
inline ServiceName lecsName(int adapter) {
    return {fmt::format("adapter{}/lecs", adapter + 1), "LECS"};
}
inline ServiceName ipName(int adapter) {
    return {fmt::format("adapter{}/ip", adapter + 1), "Classical IP"};
}
inline ServiceName signallingName(int adapter) {
    return {fmt::format("adapter{}/signalling", adapter + 1), "Signalling"};
}

// One bit for each service of an adapter.
struct ServiceSet {
    std::bitset<lecCount> lec;
    std::bitset<lesCount> les;
    bool lecs = false, ip = false, signalling = false;

    ServiceSet operator|(const ServiceSet& other) const {
        return {lec | other.lec, les | other.les, lecs || other.lecs, ip || other.ip,
                signalling || other.signalling};
    }
    bool any() const { return lec.any() || les.any() || lecs || ip || signalling; }
};

// Of all adapters.
struct ServiceSets : std::array<ServiceSet, adapterCount> {
    bool any() const { return std::ranges::any_of(*this, &ServiceSet::any); }
};

// The names of an adapter's services, and the paths of their sections in the parameter file, in this order.
struct NamedService {
    ServiceName name;
    std::string section;  // "/Adapter0/LEC1"
};
std::span<const NamedService> namedServices(int adapter);

// Calls visit(name, record, section, bit) for each service of an adapter. record(devices) is its record in a
// device table, section its path in the parameter file, bit(set) its bit.
template <class Visit> void forEachService(int adapter, Visit visit) {
    const std::size_t a = asIndex(adapter);
    auto next = namedServices(adapter).begin();
    const auto with = [&](auto record, auto bit) {
        visit(next->name, record, next->section, bit);
        ++next;
    };
    with(
        [a](auto& devices) -> auto& { return devices.sig[a]; },
        [](auto& set) -> auto& { return set.signalling; });
    for (std::size_t m = 0; m < asIndex(lecCount); ++m)
        with(
            [ a, m ](auto& devices) -> auto& { return devices.lec[a][m]; },
            [m](auto& set) -> decltype(auto) { return set.lec[m]; });
    for (std::size_t m = 0; m < asIndex(lesCount); ++m)
        with(
            [ a, m ](auto& devices) -> auto& { return devices.les[a][m]; },
            [m](auto& set) -> decltype(auto) { return set.les[m]; });
    with(
        [a](auto& devices) -> auto& { return devices.lecs[a]; }, [](auto& set) -> auto& { return set.lecs; });
    with(
        [a](auto& devices) -> auto& { return devices.ip1577[a]; }, [](auto& set) -> auto& { return set.ip; });
}

// Of several adapters, one after the other.
template <class Visit> void forEachService(std::span<const int> adapters, Visit visit) {
    for (const int adapter : adapters) forEachService(adapter, visit);
}

// Copies the records of these adapters.
void copyAdapters(std::span<const int> adapters, const AtmDevices& from, AtmDevices& to);

// The list of a record, if it has one, and the last part of its name: "pvcs", "clients".
template <class Record> auto* listOf(Record& record) requires requires {
    record.pvcs;
}
{ return &record.pvcs; }
template <class Record> auto* listOf(Record& record) requires requires {
    record.clients;
}
{ return &record.clients; }
template <class Record> auto& listFileOf(Record& record) {
    if constexpr (requires { record.clientFile; })
        return record.clientFile;
    else
        return record.pvcFile;
}
template <class Record> constexpr bool hasList = requires(Record record) {
    listOf(record);
};
template <class Record> constexpr const char* listName = "pvcs";
template <> inline constexpr const char* listName<AtmLES> = "clients";
