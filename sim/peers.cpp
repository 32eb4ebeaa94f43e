#include "sim/peers.h"

#include "sim/services.h"

#include <algorithm>
#include <set>

namespace sim {

namespace {

// Switched circuits take their VCIs from these, apart from each other and from those of PVCs; four digits, as
// windows show them.
constexpr unsigned lecVcis = 5000, lecVcisEach = 128, ipVcis = 5512, lesVcis = 5768, lesVcisEach = 512;
constexpr unsigned spareVcis = 10000;
static_assert(lecVcis > lastPvcVci && lecVcis + lecCount * lecVcisEach <= ipVcis &&
              lesVcis + lesCount * lesVcisEach <= spareVcis);
constexpr unsigned firstLearned = 4;  // after the four circuits to the servers

constexpr std::uint16_t signallingVci = 5, ilmiVci = 16;

constexpr Millis learnEvery = 2000;                       // a new peer every two seconds until all are there
constexpr std::uint16_t activePeer = 3, joiningPeer = 1;  // of an LES client
constexpr Millis joiningTime = 1500;
constexpr std::uint16_t activeEntry = 2;  // of the Classical IP table
constexpr std::uint16_t mappedKind = 1, learnedKind = 2;

enum Salt : std::uint64_t { lecSalt = 1, lesSalt, ipSalt, lecsSalt };

std::uint16_t vciFrom(unsigned base, std::size_t index) {
    return static_cast<std::uint16_t>(base + index);
}

MacBytes remoteMac(const State& state, std::uint64_t salt, int adapter, int unit, std::size_t index) {
    const std::uint64_t h = state.hash({salt, std::uint64_t(adapter), std::uint64_t(unit)});
    // The low three bytes count, so that no two rows of a table share an address.
    return {0x00,
            0x20,
            static_cast<std::uint8_t>(0x40 + h % 16),
            static_cast<std::uint8_t>(index >> 16),
            static_cast<std::uint8_t>(index >> 8),
            static_cast<std::uint8_t>(index)};
}

Peer lecPeer(const State& state, int adapter, int lec, std::size_t index) {
    Peer peer;
    peer.mac = remoteMac(state, lecSalt, adapter, lec, index);
    peer.atm = state.address(adapter, peer.mac, 0);
    peer.vci = vciFrom(lecVcis + static_cast<unsigned>(lec) * lecVcisEach + firstLearned, index);
    peer.since = state.upSince(Service::Lec, adapter, lec) + static_cast<Millis>(index + 1) * learnEvery;
    return peer;
}

Peer lesPeer(const State& state, int adapter, int les, std::size_t index) {
    Peer peer;
    peer.mac = remoteMac(state, lesSalt, adapter, les, index);
    peer.atm = state.address(adapter, peer.mac, 0);
    const unsigned base = lesVcis + static_cast<unsigned>(les) * lesVcisEach;
    peer.vci = vciFrom(base, 2 * index);
    peer.vci2 = vciFrom(base, 2 * index + 1);
    peer.since = state.upSince(Service::Les, adapter, les) + static_cast<Millis>(index) * learnEvery;
    peer.state = state.now() - peer.since < joiningTime ? joiningPeer : activePeer;
    return peer;
}

Peer ipPeer(const State& state, int adapter, std::size_t index) {
    Peer peer;
    ipAddress own;
    own = state.config().ip1577[asIndex(adapter)].ip.view();
    peer.ip = own.bytes();
    const std::size_t host = peer.ip[3] + index + 1;
    peer.ip[3] = static_cast<std::uint8_t>(host);
    peer.ip[2] = static_cast<std::uint8_t>(peer.ip[2] + (host >> 8));
    peer.mac = remoteMac(state, ipSalt, adapter, 0, index);
    peer.atm = state.address(adapter, peer.mac, 0);
    peer.vci = vciFrom(ipVcis, index);
    peer.state = activeEntry;
    peer.since = state.upSince(Service::Ip, adapter, 0) + static_cast<Millis>(index + 1) * learnEvery;
    return peer;
}

MacBytes esiOf(const esiSelector& client) {
    MacBytes esi{};
    std::copy_n(client.bytes().begin(), esi.size(), esi.begin());
    return esi;
}

Peer mapping(const esiSelector& client, int les, std::uint16_t kind) {
    Peer peer;
    peer.mac = esiOf(client);
    peer.selector = client.bytes()[6];
    peer.les = static_cast<std::uint8_t>(les);
    peer.kind = kind;
    return peer;
}

// Takes peers from `make` until one lies in the future or `most` are there.
template <class Make> void learn(const State& state, std::vector<Peer>& rows, std::size_t most, Make make) {
    for (std::size_t i = 0; i < most; ++i) {
        Peer peer = make(i);
        if (peer.since > state.now()) break;
        rows.push_back(peer);
    }
}

Millis pvcSince(const State& state, int adapter, std::uint16_t vci) {
    const auto& all = state.pvcs[asIndex(adapter)];
    const auto found = all.find(vci);
    return found == all.end() ? 0 : found->second;
}

bool ownClient(const State& state, const MacBytes& esi) {
    for (int a = 0; a < adapterCount; ++a)
        for (int lec = 0; lec < lecCount; ++lec)
            if (state.present(a) && state.lecMac(a, lec) == esi) return true;
    return false;
}

std::vector<Peer> lecRows(const State& state, int a, int lec) {
    std::vector<Peer> rows;
    if (state.code(Service::Lec, a, lec) == 0) return rows;
    for (const AtmBridgedPvc& pvc : state.config().lec[asIndex(a)][asIndex(lec)].pvcs) {
        Peer peer;
        peer.mac = pvc.mac.bytes();
        peer.vci = pvc.vci;
        peer.kind = 0;
        peer.encapsulation = static_cast<std::uint8_t>(pvc.encapsulation);
        peer.since = pvcSince(state, a, pvc.vci);
        rows.push_back(peer);
    }
    if (state.up(Service::Lec, a, lec)) {
        const std::size_t most = 2 + state.hash({lecSalt, std::uint64_t(a), std::uint64_t(lec), 0}) % 5;
        learn(state, rows, most, [&](std::size_t i) { return lecPeer(state, a, lec, i); });
    }
    return rows;
}

std::vector<Peer> lesRows(const State& state, int a, int les) {
    std::vector<Peer> rows;
    if (!state.up(Service::Les, a, les)) return rows;
    std::vector<std::pair<MacBytes, std::uint8_t>> members;
    for (int owner = 0; owner < adapterCount; ++owner)
        for (int lec = 0; lec < lecCount; ++lec)
            if (state.up(Service::Lec, owner, lec) && state.home(owner, lec).local == std::pair(a, les))
                members.emplace_back(state.lecMac(owner, lec), 0);
    // An own client is there when it has joined, mapped or not.
    for (const Mapping& m : state.mappings[asIndex(a)])
        if (const MacBytes esi = esiOf(m.client); m.les == les && !ownClient(state, esi))
            members.emplace_back(esi, m.client.bytes()[6]);
    const std::size_t strangers = 1 + state.hash({lesSalt, std::uint64_t(a), std::uint64_t(les), 0}) % 4;
    learn(state, rows, members.size() + strangers, [&](std::size_t i) {
        Peer peer = lesPeer(state, a, les, i);
        if (i < members.size()) {
            peer.mac = members[i].first;
            peer.atm = state.address(a, peer.mac, members[i].second);
        }
        return peer;
    });
    return rows;
}

std::vector<Peer> lecsRows(const State& state, int a) {
    std::vector<Peer> rows;
    if (!state.up(Service::Lecs, a, 0)) return rows;
    for (const Mapping& m : state.mappings[asIndex(a)]) rows.push_back(mapping(m.client, m.les, mappedKind));
    // Own clients that asked and were told a server are remembered for a while.
    for (int lec = 0; lec < lecCount; ++lec)
        if (state.learned(a, lec))
            rows.push_back(mapping(state.lecEsi(a, lec), state.home(a, lec).local->second, learnedKind));
    return rows;
}

std::vector<Peer> ipPvcRows(const State& state, int a) {
    std::vector<Peer> rows;
    if (state.code(Service::Ip, a, 0) == 0) return rows;
    for (const AtmRoutedPvc& pvc : state.config().ip1577[asIndex(a)].pvcs) {
        Peer peer;
        peer.ip = pvc.ip.bytes();
        peer.vci = pvc.vci;
        peer.kind = 0;
        peer.state = activeEntry;
        peer.encapsulation = static_cast<std::uint8_t>(pvc.encapsulation);
        peer.since = pvcSince(state, a, pvc.vci);
        rows.push_back(peer);
    }
    return rows;
}

std::vector<Peer> ipRows(const State& state, int a) {
    std::vector<Peer> rows = ipPvcRows(state, a);
    if (state.up(Service::Ip, a, 0) && !state.config().ip1577[asIndex(a)].pvcOnly) {
        const std::size_t most = 2 + state.hash({ipSalt, std::uint64_t(a), 0}) % 4;
        learn(state, rows, most, [&](std::size_t i) { return ipPeer(state, a, i); });
    }
    return rows;
}

std::vector<Peer> vcRows(const State& state, int a) {
    std::vector<Peer> rows;
    std::set<std::uint16_t> seen;
    const auto add = [&](Peer peer, std::uint16_t vci) {
        peer.vci = vci;
        if (vci != 0 && seen.insert(vci).second) rows.push_back(peer);
    };
    add({}, signallingVci);
    add({}, ilmiVci);
    for (int lec = 0; lec < lecCount; ++lec) {
        if (state.up(Service::Lec, a, lec)) {
            Peer server;
            server.since = state.upSince(Service::Lec, a, lec);
            const ServerCircuits c = serverCircuits(lec);
            for (const std::uint16_t vci :
                 {c.controlDirect, c.controlDistribute, c.multicastSend, c.multicastForward})
                add(server, vci);
        }
        for (const Peer& peer : lecRows(state, a, lec)) add(peer, peer.vci);
    }
    for (int les = 0; les < lesCount; ++les)
        for (const Peer& peer : lesRows(state, a, les)) {
            add(peer, peer.vci);
            add(peer, peer.vci2);
        }
    for (const Peer& peer : ipRows(state, a)) add(peer, peer.vci);
    std::sort(rows.begin() + 2, rows.end(), [](const Peer& x, const Peer& y) { return x.vci < y.vci; });
    return rows;
}

std::vector<Peer> ownRows(const State& state, Rid table, int a, int unit) {
    switch (table) {
    case Rid::LecTable:
        return lecRows(state, a, unit);
    case Rid::LesTable:
        return lesRows(state, a, unit);
    case Rid::LecsTable:
        return lecsRows(state, a);
    case Rid::VcTable:
        return vcRows(state, a);
    case Rid::IpTable:
        return ipRows(state, a);
    case Rid::IpPvcTable:
        return ipPvcRows(state, a);
    default:
        return {};
    }
}

}  // namespace

ServerCircuits serverCircuits(int lec) {
    const unsigned base = lecVcis + static_cast<unsigned>(lec) * lecVcisEach;
    return {vciFrom(base, 0), vciFrom(base, 1), vciFrom(base, 2), vciFrom(base, 3)};
}

Rows::Rows(const State& state, Rid table, int adapter, int unit)
    : state_(state), table_(table), adapter_(adapter), unit_(unit),
      own_(ownRows(state, table, adapter, unit)), count_(own_.size()) {
    const auto asked = state.forcedRows.find({table, adapter, unit});
    // A count beyond 16 bits has no place in a header.
    count_ = std::min<std::size_t>(asked == state.forcedRows.end() ? own_.size() : asked->second, 65535);
}

Peer Rows::row(std::size_t index) const {
    return index < own_.size() ? own_[index] : madeUp(index);
}

Peer Rows::madeUp(std::size_t index) const {
    Peer peer;
    switch (table_) {
    case Rid::LecTable:
        peer = lecPeer(state_, adapter_, unit_, index);
        break;
    case Rid::LesTable:
        peer = lesPeer(state_, adapter_, unit_, index);
        break;
    case Rid::LecsTable:
        peer.mac = remoteMac(state_, lecsSalt, adapter_, 0, index);
        peer.les = static_cast<std::uint8_t>(index % lesCount);
        peer.kind = index % 3 ? mappedKind : learnedKind;
        break;
    case Rid::VcTable:
        peer.vci = vciFrom(spareVcis, index);
        break;
    default:
        peer = ipPeer(state_, adapter_, index);
        break;
    }
    if (table_ == Rid::LesTable) peer.state = activePeer;
    peer.since = 0;
    return peer;
}

std::uint64_t circuitPackets(const State& state, int adapter, const Peer& peer, std::uint16_t vci,
                             bool sent) {
    // Keep-alives and registrations on the two well-known circuits, traffic on all others (per 1000 seconds).
    const std::uint32_t rate = vci == signallingVci ? 400 : vci == ilmiVci ? 200 : 60000;
    return state.counter(state.hash({std::uint64_t(adapter), vci, sent}), rate, state.now() - peer.since);
}

}  // namespace sim
