#include "sim/requests.h"

#include "platform/index.h"
#include "sim/peers.h"
#include "sim/state.h"

#include <algorithm>
#include <array>

namespace sim {

namespace {

constexpr std::string_view revision = "2.0 simulated";
constexpr std::uint32_t defaultLinkKind = 2;  // OC3c multimode, a kind with every alarm

const AtmLEC& lec(const Subject& s) {
    return s.state.config().lec[asIndex(s.adapter)][asIndex(s.unit)];
}
const AtmLES& les(const Subject& s) {
    return s.state.config().les[asIndex(s.adapter)][asIndex(s.unit)];
}
const AtmLECS& lecs(const Subject& s) {
    return s.state.config().lecs[asIndex(s.adapter)];
}

Bytes textBytes(std::string_view text, std::array<std::uint8_t, 64>& room) {
    const std::size_t count = std::min(text.size(), room.size());
    std::copy_n(text.begin(), count, room.begin());
    return Bytes(room).first(count);
}

void putText(Bytes out, std::string_view text) {
    std::array<std::uint8_t, 64> room{};
    putBytes(out, textBytes(text.substr(0, out.size() - 1), room));
}

// --- sources
// ------------------------------------------------------------------------------------------------

void constant(const Subject&, std::uint32_t arg, Bytes out) {
    putNumber(out, arg);
}

void boardCount(const Subject& s, std::uint32_t, Bytes out) {
    int count = 0;
    for (int a = 0; a < adapterCount; ++a) count += s.state.present(a);
    putNumber(out, static_cast<std::uint64_t>(count));
}

void boardMask(const Subject& s, std::uint32_t, Bytes out) {
    unsigned mask = 0;
    for (int a = 0; a < adapterCount; ++a) mask |= static_cast<unsigned>(s.state.present(a)) << a;
    putNumber(out, mask);
}

void boardMac(const Subject& s, std::uint32_t, Bytes out) {
    putBytes(out, s.state.mac(s.adapter));
}
void packageRevision(const Subject&, std::uint32_t, Bytes out) {
    putText(out, revision);
}

// Counters of a whole service grow while it is up; `arg` is their growth in 1000 seconds. It differs from
// field to field and so serves as the key too: every field has a rate of its own.
std::uint64_t serviceCount(const Subject& s, Service service, std::uint32_t arg) {
    if (!s.state.up(service, s.adapter, s.unit)) return 0;
    const std::uint64_t key =
        s.state.hash({std::uint64_t(service), std::uint64_t(s.adapter), std::uint64_t(s.unit), arg});
    return s.state.counter(key, arg, s.state.now() - s.state.upSince(service, s.adapter, s.unit));
}

void lecsCount(const Subject& s, std::uint32_t arg, Bytes out) {
    putNumber(out, serviceCount(s, Service::Lecs, arg));
}

void ipCount(const Subject& s, std::uint32_t arg, Bytes out) {
    putNumber(out, serviceCount(s, Service::Ip, arg));
}

void aalCount(const Subject& s, std::uint32_t arg, Bytes out) {
    putNumber(out, s.state.counter(s.state.hash({std::uint64_t(s.adapter), arg}), arg, s.state.now()));
}

constexpr std::uint32_t sentPackets = 210000, receivedPackets = 260000;

// Cells of the packets in `arg`, nine to a packet of usual size.
void aalCells(const Subject& s, std::uint32_t arg, Bytes out) {
    putNumber(out, 9 * s.state.counter(s.state.hash({std::uint64_t(s.adapter), arg}), arg, s.state.now()));
}

void lecState(const Subject& s, std::uint32_t, Bytes out) {
    putNumber(out, s.state.code(Service::Lec, s.adapter, s.unit));
}
// A client on PVCs only works in state 1 and says so here.
void lecWorks(const Subject& s, std::uint32_t, Bytes out) {
    putNumber(out, lec(s).pvcOnly && s.state.code(Service::Lec, s.adapter, s.unit) == 1);
}
void lecAddress(const Subject& s, std::uint32_t, Bytes out) {
    putBytes(out, s.state.address(s.adapter, s.state.lecMac(s.adapter, s.unit), 0));
}
void lecElanType(const Subject& s, std::uint32_t, Bytes out) {
    putNumber(out, static_cast<std::uint64_t>(lec(s).elanType) + 1);
}
void lecMtu(const Subject& s, std::uint32_t, Bytes out) {
    putNumber(out, static_cast<std::uint64_t>(lec(s).mtuClass));
}
void lecName(const Subject& s, std::uint32_t, Bytes out) {
    putText(out, lec(s).elanName.view());
}
void lecMacAddress(const Subject& s, std::uint32_t, Bytes out) {
    putBytes(out, s.state.lecMac(s.adapter, s.unit));
}
// arg 0: the LES, 1: the BUS. Known while the client is registered.
void lecServer(const Subject& s, std::uint32_t arg, Bytes out) {
    std::fill(out.begin(), out.end(), std::uint8_t{0});
    if (!s.state.up(Service::Lec, s.adapter, s.unit)) return;
    const State::Home home = s.state.home(s.adapter, s.unit);
    putBytes(out, arg ? home.bus : home.les);
}
void lecCircuit(const Subject& s, std::uint32_t arg, Bytes out) {
    const ServerCircuits c = serverCircuits(s.unit);
    const std::array vcis{c.controlDirect, c.controlDistribute, c.multicastSend, c.multicastForward};
    putNumber(out, s.state.up(Service::Lec, s.adapter, s.unit) ? vcis[arg] : 0u);
}

void lesState(const Subject& s, std::uint32_t, Bytes out) {
    putNumber(out, s.state.code(Service::Les, s.adapter, s.unit));
}
void lesServes(const Subject& s, std::uint32_t, Bytes out) {
    putNumber(out, s.state.up(Service::Les, s.adapter, s.unit));
}
void lesAddress(const Subject& s, std::uint32_t, Bytes out) {
    putBytes(out, s.state.lesAddress(s.adapter, s.unit));
}
void busAddress(const Subject& s, std::uint32_t, Bytes out) {
    putBytes(out, s.state.busAddress(s.adapter, s.unit));
}
void lesElanType(const Subject& s, std::uint32_t, Bytes out) {
    putNumber(out, static_cast<std::uint64_t>(std::max(1, les(s).elanType)));  // a 0 counts as Ethernet, too
}
void lesMtu(const Subject& s, std::uint32_t, Bytes out) {
    putNumber(out, static_cast<std::uint64_t>(les(s).mtuClass));
}
void lesName(const Subject& s, std::uint32_t, Bytes out) {
    putText(out, les(s).elanName.view());
}

void lecsState(const Subject& s, std::uint32_t, Bytes out) {
    putNumber(out, s.state.code(Service::Lecs, s.adapter, 0));
}
void lecsRegistered(const Subject& s, std::uint32_t, Bytes out) {
    putNumber(out, s.state.up(Service::Lecs, s.adapter, 0));
}
void lecsAddress(const Subject& s, std::uint32_t, Bytes out) {
    putBytes(out, s.state.lecsAddress(s.adapter));
}
// arg 0: the default ELAN type, which this service counts from 1 itself; 1, 2: the two MTU classes.
void lecsDefault(const Subject& s, std::uint32_t arg, Bytes out) {
    const std::array values{lecs(s).elanType, lecs(s).etherMtuClass, lecs(s).tokenRingMtuClass};
    putNumber(out, static_cast<std::uint64_t>(values[arg]));
}

void ipState(const Subject& s, std::uint32_t, Bytes out) {
    putNumber(out, s.state.code(Service::Ip, s.adapter, 0));
}

// arg 0: ILMI, 1: SAAL, 2: signalling.
void sigState(const Subject& s, std::uint32_t arg, Bytes out) {
    constexpr std::uint32_t notConfigured = 255, saalIdle = 0, saalPending = 1, saalReady = 9;
    constexpr std::uint32_t ilmiDisabled = 0, ilmiRegistering = 1, ilmiRegistered = 2, ilmiStatic = 3;
    const AtmSig& sig = s.state.config().sig[asIndex(s.adapter)];
    const std::uint32_t stage = s.state.code(Service::Sig, s.adapter, 0);
    const bool prefix = sig.address.digits().find_first_not_of('0', 1) < atmAddress::prefixDigits;
    const std::uint32_t ilmi = !sig.addressRegistration ? (prefix ? ilmiStatic : ilmiDisabled)
                               : stage == sigStages     ? ilmiRegistered
                                                        : ilmiRegistering;
    const std::uint32_t saal = stage == 1 ? saalPending : stage == 0 ? saalIdle : saalReady;
    const std::array codes{ilmi, saal, std::uint32_t(stage == sigStages)};
    putNumber(out, stage == 0 ? notConfigured : codes[arg]);
}
void sigAddress(const Subject& s, std::uint32_t, Bytes out) {
    putBytes(out, s.state.address(s.adapter, s.state.mac(s.adapter), 0));
}

void peerMac(const Subject& s, std::uint32_t, Bytes out) {
    putBytes(out, s.peer->mac);
}
void peerAtm(const Subject& s, std::uint32_t, Bytes out) {
    putBytes(out, s.peer->atm);
}
void peerIp(const Subject& s, std::uint32_t, Bytes out) {
    putBytes(out, s.peer->ip);
}
void peerKind(const Subject& s, std::uint32_t, Bytes out) {
    putNumber(out, s.peer->kind);
}
void peerState(const Subject& s, std::uint32_t, Bytes out) {
    putNumber(out, s.peer->state);
}
void peerLes(const Subject& s, std::uint32_t, Bytes out) {
    putNumber(out, s.peer->les);
}
void peerEncap(const Subject& s, std::uint32_t, Bytes out) {
    putNumber(out, s.peer->encapsulation);
}
void peerVci(const Subject& s, std::uint32_t arg, Bytes out) {
    putNumber(out, arg ? s.peer->vci2 : s.peer->vci);
}
void peerEsi(const Subject& s, std::uint32_t, Bytes out) {
    putBytes(out, s.peer->mac);
    out[6] = s.peer->selector;
}

constexpr std::uint32_t sent = 1, second = 2;
void peerPackets(const Subject& s, std::uint32_t arg, Bytes out) {
    const std::uint16_t vci = arg & second ? s.peer->vci2 : s.peer->vci;
    putNumber(out, circuitPackets(s.state, s.adapter, *s.peer, vci, arg & sent));
}

// --- the fields of every reply
// ------------------------------------------------------------------------------

using enum Kind;

constexpr Field boardState[] = {
    {"boards", 0, 2, Number, boardCount, 0},
    {"mask", 2, 2, Number, boardMask, 0},
};
constexpr Field boardMacs[] = {{"mac", 1, 6, Mac, boardMac, 0}};
constexpr Field packageRev[] = {{"revision", 0, 32, Text, packageRevision, 0}};
// Growth in 1000 seconds: traffic, then errors of every kind at a few in an hour.
constexpr Field aalStats[] = {
    {"txCells", 0, 4, Number, aalCells, sentPackets},
    {"rxCells", 4, 4, Number, aalCells, receivedPackets},
    {"txPackets", 8, 4, Number, aalCount, sentPackets},
    {"rxPackets", 12, 4, Number, aalCount, receivedPackets},
    {"rxCellErrors1", 24, 4, Number, aalCount, 9},
    {"rxCellErrors2", 28, 4, Number, aalCount, 6},
    {"rxCellErrors3", 32, 4, Number, aalCount, 3},
    {"rxCellErrors4", 36, 4, Number, aalCount, 2},
    {"rxFrameErrors1", 40, 4, Number, aalCount, 12},
    {"rxFrameErrors2", 44, 4, Number, aalCount, 7},
    {"rxFrameErrors3", 48, 4, Number, aalCount, 4},
    {"rxFrameErrors4", 52, 4, Number, aalCount, 1},
    {"rxDrops1", 68, 4, Number, aalCount, 25},
    {"invalidVcis", 72, 4, Number, aalCount, 40},
    {"invalidVpis", 76, 4, Number, aalCount, 15},
    {"rxDrops2", 80, 4, Number, aalCount, 18},
    {"txDrops", 88, 4, Number, aalCount, 11},
};
constexpr Field suniStats[] = {
    {"link", 0, 4, Number, constant, defaultLinkKind},
    {"valid", 4, 4, Number, constant, 1},
    {"linkAlarm", 8, 4, Number, constant, 0},
    {"oof", 12, 4, Number, constant, 0},
    {"lof", 16, 4, Number, constant, 0},
    {"los", 20, 4, Number, constant, 0},
    {"ferf", 32, 4, Number, constant, 0},
    {"ais", 36, 4, Number, constant, 0},
    {"lop", 48, 4, Number, constant, 0},
};

constexpr Field lecStates[] = {
    {"state", 0, 4, Number, lecState, 0},
    {"works", 12, 4, Number, lecWorks, 0},
};
constexpr Field lecStats[] = {
    {"address", 0, 20, Atm, lecAddress, 0},
    {"elanType", 20, 1, Number, lecElanType, 0},
    {"mtu", 21, 1, Number, lecMtu, 0},
    {"elanName", 28, 33, Text, lecName, 0},
    {"mac", 61, 6, Mac, lecMacAddress, 0},
    {"controlDirect", 76, 20, Atm, lecServer, 0},
    {"controlDistribute", 800, 20, Atm, lecServer, 0},
    {"controlDirectVci", 820, 2, Number, lecCircuit, 0},
    {"controlDistributeVci", 822, 2, Number, lecCircuit, 1},
    {"multicastSend", 824, 20, Atm, lecServer, 1},
    {"multicastForward", 844, 20, Atm, lecServer, 1},
    {"multicastSendVci", 864, 2, Number, lecCircuit, 2},
    {"multicastForwardVci", 866, 2, Number, lecCircuit, 3},
};
constexpr Field lecRow[] = {
    {"mac", 0, 6, Mac, peerMac, 0},
    {"kind", 8, 2, Number, peerKind, 0},
    {"address", 15, 20, Atm, peerAtm, 0},
    {"vci", 38, 2, Number, peerVci, 0},
    {"txPackets", 48, 4, Number, peerPackets, sent},
    {"rxPackets", 52, 4, Number, peerPackets, 0},
};

constexpr Field lesStates[] = {
    {"state", 0, 4, Number, lesState, 0},
    {"serves", 8, 4, Number, lesServes, 0},
};
constexpr Field lesStats[] = {
    {"address", 0, 20, Atm, lesAddress, 0}, {"elanType", 20, 1, Number, lesElanType, 0},
    {"mtu", 21, 1, Number, lesMtu, 0},      {"bus", 32, 20, Atm, busAddress, 0},
    {"elanName", 80, 33, Text, lesName, 0},
};
constexpr Field lesRow[] = {
    {"mac", 2, 6, Mac, peerMac, 0},
    {"address", 8, 20, Atm, peerAtm, 0},
    {"state", 36, 2, Number, peerState, 0},
    {"controlVci", 40, 2, Number, peerVci, 0},
    {"controlTx", 44, 4, Number, peerPackets, sent},
    {"controlRx", 48, 4, Number, peerPackets, 0},
    {"multicastVci", 52, 2, Number, peerVci, 1},
    {"multicastTx", 56, 4, Number, peerPackets, sent | second},
    {"multicastRx", 60, 4, Number, peerPackets, second},
};

constexpr Field lecsStates[] = {{"state", 0, 4, Number, lecsState, 0}};
constexpr Field lecsStats[] = {
    {"address", 0, 20, Atm, lecsAddress, 0},           {"elanType", 20, 1, Number, lecsDefault, 0},
    {"etherMtu", 21, 1, Number, lecsDefault, 1},       {"tokenRingMtu", 22, 1, Number, lecsDefault, 2},
    {"registered", 24, 4, Number, lecsRegistered, 0},  {"validRequests", 28, 4, Number, lecsCount, 900},
    {"invalidRequests", 32, 4, Number, lecsCount, 20}, {"rejected", 36, 4, Number, lecsCount, 35},
    {"made", 40, 4, Number, lecsCount, 450},           {"open", 44, 4, Number, constant, 3},
};
constexpr Field lecsRow[] = {
    {"client", 0, 7, Esi, peerEsi, 0},
    {"les", 7, 1, Number, peerLes, 0},
    {"kind", 8, 1, Number, peerKind, 0},
};

constexpr Field sigLink[] = {
    {"ilmi", 2, 1, Number, sigState, 0},
    {"saal", 3, 1, Number, sigState, 1},
    {"signalling", 4, 1, Number, sigState, 2},
    {"address", 9, 20, Atm, sigAddress, 0},
};

constexpr Field vcRow[] = {
    {"vci", 0, 2, Number, peerVci, 0},
    {"txPackets", 12, 4, Number, peerPackets, sent},
    {"rxPackets", 16, 4, Number, peerPackets, 0},
};

constexpr Field ipStates[] = {{"state", 0, 4, Number, ipState, 0}};
constexpr Field ipStats[] = {
    {"tx1", 48, 4, Number, ipCount, 90000},   {"tx2", 52, 4, Number, ipCount, 4000},
    {"txDrop1", 68, 4, Number, ipCount, 10},  {"txDrop2", 72, 4, Number, ipCount, 5},
    {"txDrop3", 76, 4, Number, ipCount, 2},   {"rx1", 80, 4, Number, ipCount, 110000},
    {"rx2", 84, 4, Number, ipCount, 5000},    {"rxDrop1", 88, 4, Number, ipCount, 14},
    {"rxDrop2", 92, 4, Number, ipCount, 13},  {"rxDrop3", 96, 4, Number, ipCount, 12},
    {"rxDrop4", 100, 4, Number, ipCount, 11}, {"rxDrop5", 104, 4, Number, ipCount, 9},
    {"rxDrop6", 108, 4, Number, ipCount, 8},  {"rxDrop7", 112, 4, Number, ipCount, 7},
    {"rxDrop8", 116, 4, Number, ipCount, 6},  {"rxDrop9", 120, 4, Number, ipCount, 4},
    {"rx3", 124, 4, Number, ipCount, 3000},
};
constexpr Field ipRow[] = {
    {"state", 0, 2, Number, peerState, 0},        {"kind", 4, 4, Number, peerKind, 0},
    {"vci", 12, 2, Signed, peerVci, 0},           {"txPackets", 20, 4, Number, peerPackets, sent},
    {"rxPackets", 24, 4, Number, peerPackets, 0}, {"ip", 30, 4, Ip, peerIp, 0},
    {"address", 34, 20, Atm, peerAtm, 0},
};
// In the order in which a routed PVC is given to the driver.
constexpr Field ipPvcRow[] = {
    {"ip", 0, 4, Ip, peerIp, 0},
    {"vci", 4, 2, Number, peerVci, 0},
    {"encap", 6, 1, Number, peerEncap, 0},
};

// --- the requests
// -------------------------------------------------------------------------------------------

using enum Shape;
constexpr std::span<const Field> none{};

constexpr Request table[] = {
    {Rid::BoardState, "driver", "driver.boards", 129, 1, Single, 6, 4, 0, boardState},
    {Rid::BoardMac, "adapter", "adapter.mac", 129, 2, Single, 7, 4, 0, boardMacs},
    {Rid::AalStats, "adapter", "adapter.aal", 129, 3, Single, 92, 4, 1, aalStats},
    {Rid::SuniStats, "adapter", "adapter.suni", 129, 4, Single, 92, 4, 1, suniStats},
    {Rid::PackageRev, "driver", "driver.revision", 129, 5, Single, 32, 4, 0, packageRev},
    {Rid::LecState, "lec", "lec.state", 20, 1, Single, 16, lecCount, lecCount, lecStates},
    {Rid::LecStats, "lec", "lec.stats", 20, 2, Single, 940, lecCount, lecCount, lecStats},
    {Rid::LecRows, "lec", "lec.rows", 20, 3, Count, 0, lecCount, lecCount, none},
    {Rid::LecTable, "lec", "lec.table", 20, 4, Table, 72, lecCount, lecCount, lecRow},
    {Rid::LesState, "les", "les.state", 21, 1, Single, 12, lesCount, lesCount, lesStates},
    {Rid::LesStats, "les", "les.stats", 21, 2, Single, 116, lesCount, lesCount, lesStats},
    {Rid::LesRows, "les", "les.rows", 21, 3, Count, 0, lesCount, lesCount, none},
    {Rid::LesTable, "les", "les.table", 21, 4, Table, 64, lesCount, lesCount, lesRow},
    {Rid::LecsState, "lecs", "lecs.state", 22, 1, Single, 8, 1, 1, lecsStates},
    {Rid::LecsStats, "lecs", "lecs.stats", 22, 2, Single, 48, 1, 1, lecsStats},
    {Rid::LecsRows, "lecs", "lecs.rows", 22, 3, Count, 0, 1, 1, none},
    {Rid::LecsTable, "lecs", "lecs.table", 22, 4, Table, 9, 1, 1, lecsRow},
    {Rid::SigLink, "sig", "sig.link", 33, 1, Single, 60, 1, 1, sigLink},
    {Rid::VcRows, "vc", "vc.rows", 1, 3, Count, 0, lesCount, 1, none},
    {Rid::VcTable, "vc", "vc.table", 1, 4, Table, 20, lesCount, 1, vcRow},
    {Rid::IpState, "ip", "ip.state", 66, 1, Single, 16, 1, 1, ipStates},
    {Rid::IpStats, "ip", "ip.stats", 66, 2, Single, 160, 1, 1, ipStats},
    {Rid::IpRows, "ip", "ip.rows", 66, 3, Count, 0, 1, 1, none},
    {Rid::IpTable, "ip", "ip.table", 66, 4, Table, 56, 1, 1, ipRow},
    {Rid::IpPvcRows, "ip.pvc", "ip.pvc-rows", 66, 5, Count, 0, 1, 1, none},
    {Rid::IpPvcTable, "ip.pvc", "ip.pvc-table", 66, 6, Table, 16, 1, 1, ipPvcRow},
    {Rid::LecChanges, "lec", "lec.control", 17, anyType, Change, 0, lecCount, lecCount, none, Access::Writer},
    {Rid::LesChanges, "les", "les.control", 18, anyType, Change, 0, lesCount, lesCount, none, Access::Writer},
    {Rid::LecsChanges, "lecs", "lecs.control", 19, anyType, Change, 0, lesCount, 1, none, Access::Writer},
    {Rid::IpChanges, "ip", "ip.control", 65, anyType, Change, 0, 1, 1, none, Access::Writer},
    {Rid::Trace, "trace", "trace.switch", 34, anyType, Change, 0, 1, 0, none, Access::Privileged},
};
static_assert(std::size(table) == asIndex(Rid::Count_));

constexpr bool inOrder() {
    for (std::size_t i = 0; i < std::size(table); ++i) {
        if (asIndex(table[i].id) != i) return false;
        for (const Field& field : table[i].fields)
            if (field.offset + field.width > table[i].size) return false;
    }
    return true;
}
static_assert(inOrder(), "a row stands at its number, and every field lies inside its reply");

}  // namespace

std::span<const Request> requests() {
    return table;
}

const Request& request(Rid id) {
    return table[asIndex(id)];
}

}  // namespace sim
