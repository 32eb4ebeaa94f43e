#include "sim/changerequests.h"

#include "sim/services.h"

#include <algorithm>

namespace sim {

namespace {

// Reads the record and hands it on.
template <class Record, Resp (*run)(const Order&, const Record&)> Resp with(const Order& order) {
    const std::optional<Record> record = readSettings<Record>(order.data);
    return record ? run(order, *record) : Resp::BadValue;
}

Resp lecStart(const Order& o, const AtmLEC& config) {
    return startLec(o.state, o.adapter, o.unit, config);
}
Resp lesStart(const Order& o, const AtmLES& config) {
    return startLes(o.state, o.adapter, o.unit, config);
}
Resp ipStart(const Order& o, const AtmIP1577& config) {
    return startIp(o.state, o.adapter, config);
}
template <Service service> Resp stopped(const Order& o) {
    return stop(o.state, service, o.adapter, o.unit);
}

// The Unit of LECS requests is that of a server, or nothing in particular.
Resp lecsStop(const Order& o) {
    return stop(o.state, Service::Lecs, o.adapter, 0);
}
Resp lecsLoad(const Order& o, const AtmLECS& config) {
    return loadLecs(o.state, o.adapter, config);
}
Resp lecsGo(const Order& o) {
    return goLecs(o.state, o.adapter);
}
Resp lecsMap(const Order& o, const Mapping& mapping) {
    return addMapping(o.state, o.adapter, mapping);
}
Resp lecsUnmap(const Order& o, const Mapping& mapping) {
    return deleteMapping(o.state, o.adapter, mapping.client);
}

template <class Pvc> Resp pvcAdd(const Order& o, const Pvc& pvc) {
    return addPvc(o.state, o.adapter, o.unit, pvc);
}
template <class Pvc> Resp pvcChange(const Order& o, const Pvc& pvc) {
    return changePvc(o.state, o.adapter, o.unit, pvc);
}
template <class Pvc> Resp pvcDelete(const Order& o, const Pvc& pvc) {
    return deletePvc(o.state, o.adapter, o.unit, pvc);
}

// Three bytes: 0, which trace, on or off.
Resp traceSwitch(const Order& o) {
    return o.data[0] ? Resp::BadValue : switchTrace(o.state, o.data[1], o.data[2]);
}

using Bridged = AtmBridgedPvc;
using Routed = AtmRoutedPvc;

constexpr ChangeRequest table[] = {
    {Rid::LecChanges, "lec.start", 1, 88, 88, 16, with<AtmLEC, lecStart>},
    {Rid::LecChanges, "lec.stop", 2, 16, 16, 16, stopped<Service::Lec>},
    {Rid::LecChanges, "lec.pvc-add", 3, 28, 28, 16, with<Bridged, pvcAdd<Bridged>>},
    {Rid::LecChanges, "lec.pvc-delete", 4, 28, 28, 16, with<Bridged, pvcDelete<Bridged>>},
    {Rid::LecChanges, "lec.pvc-change", 5, 28, 28, 16, with<Bridged, pvcChange<Bridged>>},
    {Rid::LesChanges, "les.start", 1, 68, 68, 16, with<AtmLES, lesStart>},
    {Rid::LesChanges, "les.stop", 2, 16, 16, 16, stopped<Service::Les>},
    {Rid::LecsChanges, "lecs.load", 1, 60, 60, 16, with<AtmLECS, lecsLoad>},
    {Rid::LecsChanges, "lecs.stop", 2, 16, 16, 16, lecsStop},
    {Rid::LecsChanges, "lecs.map", 3, 60, 60, 16, with<Mapping, lecsMap>},
    {Rid::LecsChanges, "lecs.unmap", 4, 60, 60, 16, with<Mapping, lecsUnmap>},
    {Rid::LecsChanges, "lecs.go", 5, 16, 16, 16, lecsGo},
    {Rid::IpChanges, "ip.start", 1, 56, 56, 16, with<AtmIP1577, ipStart>},
    {Rid::IpChanges, "ip.stop", 2, 16, 16, 16, stopped<Service::Ip>},
    {Rid::IpChanges, "ip.pvc-add", 4, 24, 24, 16, with<Routed, pvcAdd<Routed>>},
    {Rid::IpChanges, "ip.pvc-delete", 5, 24, 24, 16, with<Routed, pvcDelete<Routed>>},
    {Rid::IpChanges, "ip.pvc-change", 6, 24, 24, 16, with<Routed, pvcChange<Routed>>},
    {Rid::Trace, "trace.set", 3, 76, 27, 24, traceSwitch},
};

}  // namespace

std::span<const ChangeRequest> changeRequests() {
    return table;
}

const ChangeRequest* changeRequest(Rid service, std::uint16_t type) {
    const auto* found = std::find_if(std::begin(table), std::end(table), [&](const ChangeRequest& r) {
        return r.service == service && r.type == type;
    });
    return found == std::end(table) ? nullptr : found;
}

}  // namespace sim
