#include "sim/services.h"

#include <algorithm>
#include <fmt/core.h>

namespace sim {

namespace {

// What differs between the two kinds of PVCs: their client and their key.
template <class Pvc> struct Kin;

template <> struct Kin<AtmBridgedPvc> {
    static constexpr Service service = Service::Lec;
    static constexpr auto address = &AtmBridgedPvc::mac;
    static auto& list(State& state, int adapter, int lec) {
        return state.config().lec[asIndex(adapter)][asIndex(lec)].pvcs;
    }
};

template <> struct Kin<AtmRoutedPvc> {
    static constexpr Service service = Service::Ip;
    static constexpr auto address = &AtmRoutedPvc::ip;
    static auto& list(State& state, int adapter, int) { return state.config().ip1577[asIndex(adapter)].pvcs; }
};

template <class Pvc> auto findVci(std::vector<Pvc>& list, std::uint16_t vci) {
    return std::find_if(list.begin(), list.end(), [&](const Pvc& p) { return p.vci == vci; });
}

template <class Pvc> auto findAddress(std::vector<Pvc>& list, const Pvc& like) {
    constexpr auto address = Kin<Pvc>::address;
    return std::find_if(list.begin(), list.end(), [&](const Pvc& p) { return p.*address == like.*address; });
}

bool inRange(std::uint16_t vci) {
    return vci >= firstPvcVci && vci <= lastPvcVci;
}

// In the configuration too: a dump and the next client's home look there.
std::int32_t& enabledFlag(State& state, Service service, int adapter, int unit) {
    AtmDevices& config = state.config();
    switch (service) {
    case Service::Lec:
        return config.lec[asIndex(adapter)][asIndex(unit)].enabled;
    case Service::Les:
        return config.les[asIndex(adapter)][asIndex(unit)].enabled;
    case Service::Lecs:
        return config.lecs[asIndex(adapter)].enabled;
    default:
        return config.ip1577[asIndex(adapter)].enabled;
    }
}

void begin(State& state, Service service, int adapter, int unit) {
    state.life(service, adapter, unit) = {true, state.now(), service == Service::Lecs};
    enabledFlag(state, service, adapter, unit) = 1;
}

template <class Pvc> void dropPvcs(State& state, int adapter, int unit) {
    std::vector<Pvc>& list = Kin<Pvc>::list(state, adapter, unit);
    for (const Pvc& pvc : list) state.pvcs[asIndex(adapter)].erase(pvc.vci);
    list.clear();
}

}  // namespace

Resp startLec(State& state, int adapter, int lec, const AtmLEC& config) {
    dropPvcs<AtmBridgedPvc>(state, adapter, lec);
    state.config().lec[asIndex(adapter)][asIndex(lec)] = config;
    begin(state, Service::Lec, adapter, lec);
    return Resp::Ok;
}

Resp startIp(State& state, int adapter, const AtmIP1577& config) {
    dropPvcs<AtmRoutedPvc>(state, adapter, 0);
    state.config().ip1577[asIndex(adapter)] = config;
    begin(state, Service::Ip, adapter, 0);
    return Resp::Ok;
}

Resp startLes(State& state, int adapter, int les, const AtmLES& config) {
    if (state.life(Service::Les, adapter, les).enabled) return Resp::Running;
    state.config().les[asIndex(adapter)][asIndex(les)] = config;
    begin(state, Service::Les, adapter, les);
    return Resp::Ok;
}

Resp stop(State& state, Service service, int adapter, int unit) {
    if (service == Service::Lec) dropPvcs<AtmBridgedPvc>(state, adapter, unit);
    if (service == Service::Ip) dropPvcs<AtmRoutedPvc>(state, adapter, unit);
    state.life(service, adapter, unit) = {};
    enabledFlag(state, service, adapter, unit) = 0;
    return Resp::Ok;
}

Resp loadLecs(State& state, int adapter, const AtmLECS& config) {
    Life& life = state.life(Service::Lecs, adapter, 0);
    if (life.enabled) return Resp::Running;
    state.config().lecs[asIndex(adapter)] = config;
    state.mappings[asIndex(adapter)].clear();
    life.loaded = true;
    return Resp::Ok;
}

Resp goLecs(State& state, int adapter) {
    if (!state.life(Service::Lecs, adapter, 0).loaded) return Resp::NotLoaded;
    std::erase_if(state.forgotten, [&](const auto& entry) { return entry.first.first == adapter; });
    begin(state, Service::Lecs, adapter, 0);
    return Resp::Ok;
}

Resp addMapping(State& state, int adapter, const Mapping& mapping) {
    if (!state.life(Service::Lecs, adapter, 0).loaded) return Resp::NotLoaded;
    if (mapping.les < 0 || mapping.les >= lesCount) return Resp::NoUnit;
    std::vector<Mapping>& all = state.mappings[asIndex(adapter)];
    if (std::any_of(all.begin(), all.end(), [&](const Mapping& m) { return m.client == mapping.client; }))
        return Resp::DuplicateMapping;
    all.push_back(mapping);
    return Resp::Ok;
}

Resp deleteMapping(State& state, int adapter, const esiSelector& client) {
    if (!state.life(Service::Lecs, adapter, 0).loaded) return Resp::NotLoaded;
    bool found = std::erase_if(state.mappings[asIndex(adapter)],
                               [&](const Mapping& m) { return m.client == client; }) > 0;
    for (int lec = 0; lec < lecCount; ++lec)
        if (state.learned(adapter, lec) && state.lecEsi(adapter, lec) == client) {
            state.forgotten[{adapter, lec}] = state.now();
            found = true;
        }
    return found ? Resp::Ok : Resp::NoMapping;
}

template <class Pvc> Resp addPvc(State& state, int adapter, int unit, const Pvc& pvc) {
    if (!state.life(Kin<Pvc>::service, adapter, unit).enabled) return Resp::NotRunning;
    if (!inRange(pvc.vci)) return Resp::VciRange;
    std::vector<Pvc>& list = Kin<Pvc>::list(state, adapter, unit);
    if (findAddress(list, pvc) != list.end()) return Resp::DuplicatePvc;
    if (!state.pvcs[asIndex(adapter)].emplace(pvc.vci, state.now()).second) return Resp::VciInUse;
    list.push_back(pvc);
    return Resp::Ok;
}

template <class Pvc> Resp changePvc(State& state, int adapter, int unit, const Pvc& pvc) {
    if (!state.life(Kin<Pvc>::service, adapter, unit).enabled) return Resp::NotRunning;
    if (!inRange(pvc.vci)) return Resp::VciRange;
    std::vector<Pvc>& list = Kin<Pvc>::list(state, adapter, unit);
    const auto same = findAddress(list, pvc);
    auto found = findVci(list, pvc.vci);
    if (found == list.end()) {
        if (same == list.end()) return Resp::NoPvc;
        found = same;
        auto& circuits = state.pvcs[asIndex(adapter)];
        if (!circuits.emplace(pvc.vci, state.now()).second) return Resp::VciInUse;
        circuits.erase(found->vci);
    } else if (same != list.end() && same != found)
        return Resp::DuplicatePvc;
    *found = pvc;
    return Resp::Ok;
}

template <class Pvc> Resp deletePvc(State& state, int adapter, int unit, const Pvc& pvc) {
    if (!state.life(Kin<Pvc>::service, adapter, unit).enabled) return Resp::NotRunning;
    if (!inRange(pvc.vci)) return Resp::VciRange;
    std::vector<Pvc>& list = Kin<Pvc>::list(state, adapter, unit);
    const auto found = findVci(list, pvc.vci);
    if (found == list.end() || found != findAddress(list, pvc)) return Resp::NoPvc;
    state.pvcs[asIndex(adapter)].erase(found->vci);
    list.erase(found);
    return Resp::Ok;
}

template Resp addPvc(State&, int, int, const AtmBridgedPvc&);
template Resp addPvc(State&, int, int, const AtmRoutedPvc&);
template Resp changePvc(State&, int, int, const AtmBridgedPvc&);
template Resp changePvc(State&, int, int, const AtmRoutedPvc&);
template Resp deletePvc(State&, int, int, const AtmBridgedPvc&);
template Resp deletePvc(State&, int, int, const AtmRoutedPvc&);

Resp switchTrace(State& state, std::uint8_t code, std::uint8_t on) {
    const auto found = std::find_if(state.traces.begin(), state.traces.end(),
                                    [&](const TraceSwitch& t) { return t.code == code; });
    if (found == state.traces.end() || on > 1) return Resp::BadValue;
    found->on = on == 1;
    return Resp::Ok;
}

namespace {

void note(State& state, Resp resp, int adapter, const std::string& what) {
    if (resp != Resp::Ok)
        state.leftOut.push_back(fmt::format("adapter {}: {} left out: {}", adapter + 1, what,
                                            respText(static_cast<std::uint16_t>(resp))));
}

template <class Pvc> void loadPvcs(State& state, int adapter, int unit) {
    std::vector<Pvc> wanted;
    wanted.swap(Kin<Pvc>::list(state, adapter, unit));
    if (!state.life(Kin<Pvc>::service, adapter, unit).enabled) return;
    for (const Pvc& pvc : wanted)
        note(state, addPvc(state, adapter, unit, pvc), adapter, fmt::format("PVC 0/{}", pvc.vci));
}

}  // namespace

void load(State& state) {
    for (int a = 0; a < adapterCount; ++a) {
        if (!state.present(a)) continue;
        const auto enable = [&](Service service, int unit) {
            if (enabledFlag(state, service, a, unit)) begin(state, service, a, unit);
        };
        for (int u = 0; u < lecCount; ++u) {
            enable(Service::Lec, u);
            loadPvcs<AtmBridgedPvc>(state, a, u);
        }
        enable(Service::Ip, 0);
        loadPvcs<AtmRoutedPvc>(state, a, 0);
        state.life(Service::Sig, a, 0).enabled = state.config().sig[asIndex(a)].uniRevision != 0;

        // The clients of the files also are those who joined without an LECS.
        Life& lecs = state.life(Service::Lecs, a, 0);
        lecs.loaded = true;
        for (int les = 0; les < lesCount; ++les) {
            enable(Service::Les, les);
            std::vector<esiSelector> clients;
            clients.swap(state.config().les[asIndex(a)][asIndex(les)].clients);
            for (const esiSelector& client : clients)
                note(state, addMapping(state, a, {client, les}), a,
                     fmt::format("client {}", client.GetF2EsiSelector()));
        }
        lecs.loaded = false;
        enable(Service::Lecs, 0);
    }
}

}  // namespace sim
