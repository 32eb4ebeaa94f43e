#include "metrics/metric.h"

#include "driver/layout.h"
#include "driver/views.h"
#include "metrics/reading.h"
#include "model/statecodes.h"
#include "model/tvdatbuf.h"
#include "model/tvtypes.h"

#include <algorithm>
#include <fmt/format.h>
#include <functional>
#include <iterator>
#include <string_view>

namespace metrics {

namespace {

// ---- how values are read ----

template <class Member> struct ViewOf;
template <class View, class Result> struct ViewOf<Result (View::*)() const> { using type = View; };

// A member of a view, made a value by `convert`.
template <auto field, auto convert> Value read(const Reading&, Bytes bytes) {
    return Value(convert(std::invoke(field, typename ViewOf<decltype(field)>::type(bytes))));
}

constexpr auto asNumber = [](auto number) { return static_cast<std::uint32_t>(number); };
constexpr auto asVci = [](auto vci) { return std::uint32_t{static_cast<std::uint16_t>(vci)}; };
constexpr auto asFlag = [](auto word) { return word != 0; };
constexpr auto asText = [](const std::string& text) { return text; };
constexpr auto asMac = [](const macAddress& mac) { return std::string(mac.GetFMacAddress()); };
constexpr auto asIp = [](const ipAddress& ip) { return std::string(ip.GetFIPAddress()); };
constexpr auto asEsi = [](const esiSelector& esi) { return std::string(esi.GetF2EsiSelector()); };
constexpr auto asPrefixOf = [](const atmAddress& atm) { return std::string(atm.GetFNetworkPrefix()); };
constexpr auto asEsiOf = [](const atmAddress& atm) { return std::string(atm.GetFESISelector()); };

State stateOf(std::int64_t code, const char* words) {
    return {code, std::string_view(words) == "XXXX" ? nullptr : words};
}
template <auto words> constexpr auto asState = [](auto code) { return stateOf(code, words(code)); };
template <class Code> const char* wordsOfCode(const char* (*words)(Code), std::int64_t code) {
    return stateOf(code, words(static_cast<Code>(code))).words;
}

Value mtu(std::int16_t code) {
    const int size = MtuSize(code);
    return size ? Value(static_cast<std::uint32_t>(size)) : Value(Unnamed{code});
}
constexpr auto asMtu = [](std::int16_t code) { return mtu(code); };

Value elanType(std::int16_t code) {
    constexpr const char* names[] = {"ethernet", "tokenRing"};
    const bool known = code >= 1 && code <= std::ssize(names);
    return known ? Value(std::string(names[code - 1])) : Value(Unnamed{code});
}
constexpr auto asElanType = [](std::int16_t code) { return elanType(code); };

// ---- rows ----

template <auto counter> constexpr Metric counts(const char* name, const char* unit, const char* help) {
    return {name, unit, Kind::counter, help, read<counter, asNumber>};
}
// Of packets on a circuit, whose VCI `circuit` reads.
constexpr Metric packetsOfCircuit(Metric::Read circuit, Metric::Read count, const char* name,
                                  const char* help) {
    return {.name = name,
            .unit = "packets",
            .kind = Kind::counter,
            .help = help,
            .read = count,
            .circuit = circuit};
}
template <auto circuit, auto counter> constexpr Metric countsOn(const char* name, const char* help) {
    return packetsOfCircuit(read<circuit, asVci>, read<counter, asNumber>, name, help);
}
template <auto field> constexpr Metric vci(const char* name, const char* help) {
    return {name, "", Kind::number, help, read<field, asVci>};
}
template <auto field, auto words> constexpr Metric state(const char* name, const char* help) {
    return {.name = name,
            .unit = "",
            .kind = Kind::state,
            .help = help,
            .read = read<field, asState<words>>,
            .words = [](std::int64_t code) { return wordsOfCode(words, code); }};
}
template <auto field, auto convert> constexpr Metric text(const char* name, const char* help) {
    return {name, "", Kind::text, help, read<field, convert>};
}
template <auto field, auto convert> constexpr Metric address(const char* name, const char* help) {
    return {name, "", Kind::address, help, read<field, convert>};
}
template <auto field> constexpr Metric size(const char* name, const char* help) {
    return {name, "bytes", Kind::number, help, read<field, asMtu>};
}

// ---- an adapter ----

const char* linkKindWords(std::uint32_t kind) {
    constexpr const char* words[] = {"25 Mb/s", "OC3c MM", "OC3c SM", "155 UTP"};
    return kind >= link25 && kind <= link155Utp ? words[kind - link25] : "XXXX";
}

// On a link of 25 Mbit/s an alarm of its own is in the place of the loss of signal. Other kinds of links may
// have no alarms at all.
enum class On { otherLinks, link25, allLinks, allLinksWithFrames };

template <auto word, On on> Value alarm(const Reading&, Bytes bytes) {
    const SuniStatsView view(bytes);
    const bool is25 = view.linkKind() == link25;
    if (!is25 && view.valid() == 0) return Unknown::noAlarms;
    if (on == On::link25 && !is25) return Unknown::noAlarms;
    if (on == On::otherLinks && is25) return Unknown::noAlarms;
    const bool raised = std::invoke(word, view) != 0;
    if (on == On::allLinksWithFrames && !raised && view.lossOfFrame() != 0) return Unknown::lossOfFrame;
    return raised;
}
template <auto word, On on> constexpr Metric alarms(const char* name, const char* help) {
    return {name, "", Kind::alarm, help, alarm<word, on>};
}

constexpr Metric board[] = {
    address<&BoardMacView::address, asMac>("mac", "MAC address of the adapter."),
};

using Suni = SuniStatsView;
constexpr Metric physicalLayer[] = {
    state<&Suni::linkKind, linkKindWords>("linkKind", "Kind of the physical link."),
    alarms<&Suni::linkAlarm, On::link25>("linkDown", "The 25 Mbit/s link is down."),
    alarms<&Suni::lossOfSignal, On::otherLinks>("lossOfSignal", "Loss of signal (LOS)."),
    alarms<&Suni::lossOfFrame, On::allLinks>("lossOfFrame", "Loss of frame (LOF)."),
    alarms<&Suni::outOfFrame, On::allLinks>("outOfFrame", "Out of frame (OOF)."),
    alarms<&Suni::farEndFailure, On::allLinksWithFrames>("farEndFailure", "Far end receive failure (FERF)."),
    alarms<&Suni::alarmIndication, On::allLinks>("alarmIndication", "Alarm indication signal (AIS)."),
    alarms<&Suni::lossOfPointer, On::allLinksWithFrames>("lossOfPointer", "Loss of pointer (LOP)."),
};

using Aal = AalStatsView;
constexpr Metric aal5[] = {
    counts<&Aal::rxPackets>("rxPackets", "packets", "AAL5 packets received."),
    counts<&Aal::rxCells>("rxCells", "cells", "Cells received."),
    counts<&Aal::txPackets>("txPackets", "packets", "AAL5 packets transmitted."),
    counts<&Aal::txCells>("txCells", "cells", "Cells transmitted."),
    counts<&Aal::rxDropped>("rxDropped", "packets", "Received AAL5 packets that were dropped."),
    counts<&Aal::rxFrameErrors>("rxFrameErrors", "errors", "AAL5 frames received with errors."),
    counts<&Aal::txDropped>("txDropped", "packets", "AAL5 packets that were dropped and not transmitted."),
    counts<&Aal::invalidVpis>("invalidVpis", "cells", "Cells received with an invalid VPI."),
    counts<&Aal::invalidVcis>("invalidVcis", "cells", "Cells received with an invalid VCI."),
    counts<&Aal::rxCellErrors>("rxCellErrors", "errors", "Cells received with errors."),
};

constexpr Metric circuit[] = {
    vci<&VcRowView::vci>("vci", "VCI of the virtual circuit; its VPI is 0."),
    counts<&VcRowView::rx>("rxFrames", "frames", "Frames received on the virtual circuit."),
    counts<&VcRowView::tx>("txFrames", "frames", "Frames transmitted on the virtual circuit."),
};

// ---- signalling ----

template <auto convert> Value registered(const Reading&, Bytes bytes) {
    const LinkStateView view(bytes);
    if (view.ilmi() != ilmiRegistered && view.ilmi() != ilmiStatic) return Unknown::notRegistered;
    return convert(view.address());
}

constexpr Metric signallingStates[] = {
    state<&LinkStateView::ilmi, IlmiStateToString>("ilmiState", "State of address registration by ILMI."),
    state<&LinkStateView::saal, SaalStateToString>("saalState", "State of the signalling AAL (QSAAL)."),
    state<&LinkStateView::signalling, SigStateToString>("signallingState", "State of UNI signalling."),
    {"networkPrefix", "", Kind::address, "Network prefix of the registered ATM address.",
     registered<asPrefixOf>},
    {"esiSelector", "", Kind::address, "ESI and selector of the registered ATM address.",
     registered<asEsiOf>},
};

// The circuits that ILMI and signalling always have.
constexpr std::uint16_t ilmiVci = 16, signallingVci = 5;

template <std::uint16_t number, auto count> constexpr Metric frames(const char* name, const char* help) {
    return {name, "frames", Kind::counter, help,
            [](const Reading& reading, Bytes) { return reading.circuit(number, count); }};
}

constexpr Metric signallingFrames[] = {
    frames<ilmiVci, &VcRowView::rx>("ilmiRxFrames", "Frames received on the virtual circuit of ILMI."),
    frames<ilmiVci, &VcRowView::tx>("ilmiTxFrames", "Frames transmitted on the virtual circuit of ILMI."),
    frames<signallingVci, &VcRowView::rx>("signallingRxFrames",
                                          "Frames received on the virtual circuit of signalling."),
    frames<signallingVci, &VcRowView::tx>("signallingTxFrames",
                                          "Frames transmitted on the virtual circuit of signalling."),
};

// ---- LAN Emulation Client ----

Value lecState(const Reading&, Bytes bytes) {
    const LecStateView view(bytes);
    return stateOf(view.state(), LecStateToString(view.state(), view.flag() != 0));
}
Value lecRunning(const Reading&, Bytes bytes) {
    const LecStateView view(bytes);
    return view.state() == lecJoined || (view.state() == lecOnPvcs && view.flag() != 0);
}
const char* lecWords(std::int64_t code) {
    if (code == lecOnPvcs) return "Starting, or on PVCs";
    return stateOf(code, LecStateToString(static_cast<std::uint32_t>(code), false)).words;
}
constexpr Metric lecStates[] = {
    {.name = "state",
     .unit = "",
     .kind = Kind::state,
     .help = "State of the LAN Emulation Client.",
     .read = lecState,
     .words = lecWords},
    {"running", "", Kind::flag, "The client is up: it has joined its ELAN, or works on PVCs.", lecRunning},
};

using Lec = LecStatsView;
constexpr Metric lecStats[] = {
    text<&Lec::elanName, asText>("elanName", "Name of the emulated LAN."),
    text<&Lec::elanType, asElanType>("elanType", "Type of the emulated LAN."),
    size<&Lec::mtuClass>("mtu", "Largest frame of the emulated LAN."),
    address<&Lec::mac, asMac>("mac", "MAC address of the client."),
    address<static_cast<atmAddress (Lec::*)() const>(&Lec::address), asPrefixOf>(
        "networkPrefix", "Network prefix of the client's ATM address."),
    address<static_cast<atmAddress (Lec::*)() const>(&Lec::address), asEsiOf>(
        "esiSelector", "ESI and selector of the client's ATM address."),
};

// The connections to LES and BUS, which exist once the client has joined.
bool joined(const Reading& reading) {
    return LecStateView(reading.bytes(QueryId::lecState)).state() == lecJoined;
}
std::uint16_t vciOf(const Reading& reading, Bytes bytes, LecConnection connection) {
    return joined(reading) ? Lec(bytes).vci(connection) : std::uint16_t{0};
}
template <LecConnection connection> Value connectionVci(const Reading& reading, Bytes bytes) {
    const std::uint32_t number = vciOf(reading, bytes, connection);
    return number ? Value(number) : Value(Unknown::notConnected);
}
template <LecConnection connection, auto convert>
Value connectionAddress(const Reading& reading, Bytes bytes) {
    if (vciOf(reading, bytes, connection) == 0) return Unknown::notConnected;
    return convert(Lec(bytes).address(connection));
}
template <LecConnection connection, auto count> Value connectionCount(const Reading& reading, Bytes bytes) {
    const std::uint16_t number = vciOf(reading, bytes, connection);
    return number ? reading.circuit(number, count) : Value(Unknown::notConnected);
}

template <LecConnection c> constexpr Metric connectionVcis(const char* name, const char* help) {
    return {name, "", Kind::number, help, connectionVci<c>};
}
template <LecConnection c, auto count> constexpr Metric connectionCounts(const char* name, const char* help) {
    return packetsOfCircuit(connectionVci<c>, connectionCount<c, count>, name, help);
}
template <LecConnection c, auto convert>
constexpr Metric connectionAddresses(const char* name, const char* help) {
    return {name, "", Kind::address, help, connectionAddress<c, convert>};
}

using enum LecConnection;
using Vc = VcRowView;
constexpr Metric lecServers[] = {
    connectionVcis<controlDirect>("controlDirectVci", "VCI of the control direct connection to the LES."),
    connectionCounts<controlDirect, &Vc::rx>("controlDirectRxPackets",
                                             "Packets received on the control direct connection."),
    connectionCounts<controlDirect, &Vc::tx>("controlDirectTxPackets",
                                             "Packets transmitted on the control direct connection."),
    connectionAddresses<controlDirect, asPrefixOf>("controlDirectNetworkPrefix",
                                                   "Network prefix at the far end of control direct."),
    connectionAddresses<controlDirect, asEsiOf>("controlDirectEsiSelector",
                                                "ESI and selector at the far end of control direct."),
    connectionVcis<controlDistribute>("controlDistributeVci",
                                      "VCI of the control distribute connection from the LES."),
    connectionCounts<controlDistribute, &Vc::rx>("controlDistributeRxPackets",
                                                 "Packets received on the control distribute connection."),
    connectionCounts<controlDistribute, &Vc::tx>("controlDistributeTxPackets",
                                                 "Packets transmitted on the control distribute connection."),
    connectionAddresses<controlDistribute, asPrefixOf>(
        "controlDistributeNetworkPrefix", "Network prefix at the far end of control distribute."),
    connectionAddresses<controlDistribute, asEsiOf>("controlDistributeEsiSelector",
                                                    "ESI and selector at the far end of control distribute."),
    connectionVcis<multicastSend>("multicastSendVci", "VCI of the multicast send connection to the BUS."),
    connectionCounts<multicastSend, &Vc::rx>("multicastSendRxPackets",
                                             "Packets received on the multicast send connection."),
    connectionCounts<multicastSend, &Vc::tx>("multicastSendTxPackets",
                                             "Packets transmitted on the multicast send connection."),
    connectionAddresses<multicastSend, asPrefixOf>("multicastSendNetworkPrefix",
                                                   "Network prefix at the far end of multicast send."),
    connectionAddresses<multicastSend, asEsiOf>("multicastSendEsiSelector",
                                                "ESI and selector at the far end of multicast send."),
    connectionVcis<multicastForward>("multicastForwardVci",
                                     "VCI of the multicast forward connection from the BUS."),
    connectionCounts<multicastForward, &Vc::rx>("multicastForwardRxPackets",
                                                "Packets received on the multicast forward connection."),
    connectionCounts<multicastForward, &Vc::tx>("multicastForwardTxPackets",
                                                "Packets transmitted on the multicast forward connection."),
    connectionAddresses<multicastForward, asPrefixOf>("multicastForwardNetworkPrefix",
                                                      "Network prefix at the far end of multicast forward."),
    connectionAddresses<multicastForward, asEsiOf>("multicastForwardEsiSelector",
                                                   "ESI and selector at the far end of multicast forward."),
};

// The address at the far end of a data connection.
template <class Row, auto convert> Value remoteAddress(const Reading&, Bytes bytes) {
    const Row row(bytes);
    return row.switched() ? Value(convert(row.address())) : Value(Unknown::pvc);
}
template <class Row, auto convert> constexpr Metric remote(const char* name, const char* help) {
    return {name, "", Kind::address, help, remoteAddress<Row, convert>};
}

constexpr Metric lecConnection[] = {
    address<&LecRowView::mac, asMac>("mac", "MAC address at the far end."),
    vci<&LecRowView::vci>("vci", "VCI of the connection."),
    {"switched", "", Kind::flag, "The connection was set up by signalling, and is no PVC.",
     read<&LecRowView::switched, asFlag>},
    counts<&LecRowView::rx>("rxPackets", "packets", "Packets received on the connection."),
    counts<&LecRowView::tx>("txPackets", "packets", "Packets transmitted on the connection."),
    remote<LecRowView, asPrefixOf>("networkPrefix", "Network prefix at the far end."),
    remote<LecRowView, asEsiOf>("esiSelector", "ESI and selector at the far end."),
};

// ---- LAN Emulation Server ----

Value lesState(const Reading&, Bytes bytes) {
    const LesStateView view(bytes);
    return stateOf(view.state(), LesStateToString(view.state(), view.flag() != 0));
}
Value lesRunning(const Reading&, Bytes bytes) {
    const LesStateView view(bytes);
    return view.state() == lesServing && view.flag() != 0;
}
const char* lesWords(std::int64_t code) {
    if (code == lesServing) return "Starting or Serving";
    return stateOf(code, LesStateToString(static_cast<std::uint32_t>(code), false)).words;
}
constexpr Metric lesStates[] = {
    {.name = "state",
     .unit = "",
     .kind = Kind::state,
     .help = "State of the LAN Emulation Server.",
     .read = lesState,
     .words = lesWords},
    {"running", "", Kind::flag, "The server is up.", lesRunning},
};

using Les = LesStatsView;
constexpr Metric lesStats[] = {
    text<&Les::elanName, asText>("elanName", "Name of the emulated LAN."),
    text<&Les::elanType, asElanType>("elanType", "Type of the emulated LAN."),
    size<&Les::mtuClass>("mtu", "Largest frame of the emulated LAN."),
    address<&Les::address, asPrefixOf>("networkPrefix", "Network prefix of the server's ATM address."),
    address<&Les::address, asEsiOf>("esiSelector", "ESI and selector of the server's ATM address."),
    address<&Les::busAddress, asPrefixOf>("busNetworkPrefix", "Network prefix of the BUS's ATM address."),
    address<&Les::busAddress, asEsiOf>("busEsiSelector", "ESI and selector of the BUS's ATM address."),
};

using LesRow = LesRowView;
constexpr Metric lesClient[] = {
    address<&LesRow::mac, asMac>("mac", "MAC address of the client."),
    state<&LesRow::state, BusStateToString>("state", "State of the client's service."),
    vci<&LesRow::controlVci>("controlDirectVci", "VCI of the client's control direct connection."),
    countsOn<&LesRow::controlVci, &LesRow::controlRx>(
        "controlDirectRxPackets", "Packets received on the client's control direct connection."),
    countsOn<&LesRow::controlVci, &LesRow::controlTx>(
        "controlDirectTxPackets", "Packets transmitted on the client's control direct connection."),
    vci<&LesRow::multicastVci>("multicastSendVci", "VCI of the client's multicast send connection."),
    countsOn<&LesRow::multicastVci, &LesRow::multicastRx>(
        "multicastSendRxPackets", "Packets received on the client's multicast send connection."),
    countsOn<&LesRow::multicastVci, &LesRow::multicastTx>(
        "multicastSendTxPackets", "Packets transmitted on the client's multicast send connection."),
    address<&LesRow::address, asPrefixOf>("networkPrefix", "Network prefix of the client's ATM address."),
    address<&LesRow::address, asEsiOf>("esiSelector", "ESI and selector of the client's ATM address."),
};

// ---- LAN Emulation Configuration Server ----

constexpr auto isLecsRunning = [](std::uint32_t code) { return code == lecsRunning; };
constexpr Metric lecsStates[] = {
    state<&LecsStateView::state, LecsStateToString>("state",
                                                    "State of the LAN Emulation Configuration Server."),
    {"running", "", Kind::flag, "The server is up.", read<&LecsStateView::state, isLecsRunning>},
};

using Lecs = LecsStatsView;
constexpr Metric lecsStats[] = {
    {"registered", "", Kind::flag, "The server's address is registered.", read<&Lecs::registered, asFlag>},
    text<&Lecs::elanType, asElanType>("elanType", "Type of emulated LAN for clients that ask for none."),
    size<&Lecs::etherMtuClass>("ethernetMtu",
                               "Largest frame of Ethernet LANs for clients that ask for none."),
    size<&Lecs::tokenRingMtuClass>("tokenRingMtu",
                                   "Largest frame of Token Ring LANs for clients that ask for none."),
    address<&Lecs::address, asPrefixOf>("networkPrefix", "Network prefix of the server's ATM address."),
    address<&Lecs::address, asEsiOf>("esiSelector", "ESI and selector of the server's ATM address."),
    counts<&Lecs::validRequests>("validRequests", "requests", "Valid requests received."),
    counts<&Lecs::invalidRequests>("invalidRequests", "requests", "Invalid requests received."),
    counts<&Lecs::rejected>("rejectedRequests", "requests", "Requests rejected."),
    counts<&Lecs::connectionsMade>("connectionsMade", "connections", "Connections made by clients."),
    {"connectionsOpen", "connections", Kind::number, "Connections open now.",
     read<&Lecs::connectionsOpen, asNumber>},
};

constexpr auto fromOne = [](std::uint8_t number) { return std::uint32_t{number} + 1; };
constexpr auto isTemporary = [](std::uint8_t kind) { return kind == LecsRowView::temporary; };
constexpr Metric lecsClient[] = {
    address<&LecsRowView::client, asEsi>("client", "ESI and selector of the client."),
    {"les", "", Kind::number, "Number of the LES that the client is sent to, from 1.",
     read<&LecsRowView::les, fromOne>},
    {"learned", "", Kind::flag, "The server has learned the client, which is not configured.",
     read<&LecsRowView::kind, isTemporary>},
};

// ---- Classical IP ----

constexpr auto isIpRunning = [](std::uint32_t code) { return code == ipRunning; };
constexpr Metric ipStates[] = {
    state<&IpStateView::state, IpStateToString>("state", "State of the Classical IP client."),
    {"running", "", Kind::flag, "The client is up.", read<&IpStateView::state, isIpRunning>},
};

using Ip = IpStatsView;
constexpr Metric ipStats[] = {
    counts<&Ip::rxPackets>("rxPackets", "packets", "IP packets received."),
    counts<&Ip::txPackets>("txPackets", "packets", "IP packets transmitted."),
    counts<&Ip::rxDropped>("rxDropped", "packets", "Received IP packets that were dropped."),
    counts<&Ip::txDropped>("txDropped", "packets", "IP packets that were dropped and not transmitted."),
};

using IpRow = IpRowView;
constexpr Metric ipConnection[] = {
    address<&IpRow::ip, asIp>("ip", "IP address at the far end."),
    vci<&IpRow::vci>("vci", "VCI of the connection."),
    state<&IpRow::state, LmacStateToString>("state", "State of the connection."),
    {"switched", "", Kind::flag, "The connection was set up by signalling, and is no PVC.",
     read<&IpRow::switched, asFlag>},
    counts<&IpRow::rx>("rxPackets", "packets", "Packets received on the connection."),
    counts<&IpRow::tx>("txPackets", "packets", "Packets transmitted on the connection."),
    remote<IpRow, asPrefixOf>("networkPrefix", "Network prefix at the far end."),
    remote<IpRow, asEsiOf>("esiSelector", "ESI and selector at the far end."),
};

// ---- groups and services ----

constexpr RowBytes bytesOf(layout::U16 field) {
    return {field.offset, 2};
}
constexpr RowBytes bytesOf(layout::Mac field) {
    return {field.offset, 6};
}
constexpr RowBytes bytesOf(layout::Esi field) {
    return {field.offset, 7};
}

constexpr Group allGroups[] = {
    {Service::adapter, QueryId::boardMacAddress, board},
    {Service::adapter, QueryId::suniStats, physicalLayer},
    {Service::adapter, QueryId::aalStats, aal5},
    {Service::adapter, QueryId::vcTable, circuit, "circuits", "vci", bytesOf(layout::vcRow::vci)},
    {Service::signalling, QueryId::linkState, signallingStates},
    {Service::signalling, QueryId::vcTable, signallingFrames},
    {Service::lec, QueryId::lecState, lecStates},
    {.service = Service::lec, .query = QueryId::lecStats, .metrics = lecStats},
    {.service = Service::lec, .query = QueryId::lecStats, .metrics = lecServers, .circuits = joined},
    {Service::lec, QueryId::lecTable, lecConnection, "connections", "vci", bytesOf(layout::lecRow::vci)},
    {Service::les, QueryId::lesState, lesStates},
    {Service::les, QueryId::lesStats, lesStats},
    {Service::les, QueryId::lesTable, lesClient, "clients", "mac", bytesOf(layout::lesRow::mac)},
    {Service::lecs, QueryId::lecsState, lecsStates},
    {Service::lecs, QueryId::lecsStats, lecsStats},
    {Service::lecs, QueryId::lecsTable, lecsClient, "clients", "client", bytesOf(layout::lecsRow::client)},
    {Service::ip, QueryId::ipState, ipStates},
    {Service::ip, QueryId::ipStats, ipStats},
    {Service::ip, QueryId::ipTable, ipConnection, "connections", "vci", bytesOf(layout::ipRow::vci)},
};

struct ServiceRow {
    Service service;
    const char* name;
    int count;
    bool numbered, canBeAbsent;
};
constexpr ServiceRow services[] = {
    {Service::adapter, "adapter", 1, false, false}, {Service::signalling, "signalling", 1, false, false},
    {Service::lec, "lec", lecCount, true, true},    {Service::les, "les", lesCount, true, true},
    {Service::lecs, "lecs", 1, false, true},        {Service::ip, "ip", 1, false, true},
};
constexpr bool inOrder() {
    for (std::size_t i = 0; i < std::size(services); ++i)
        if (services[i].service != static_cast<Service>(i)) return false;
    return true;
}
static_assert(inOrder());

const ServiceRow& rowOf(Service service) {
    return services[static_cast<std::size_t>(service)];
}

}  // namespace

std::span<const Group> groups() {
    return allGroups;
}

std::span<const Group> groupsOf(Service service) {
    const auto of = [service](const Group& group) { return group.service == service; };
    const Group* first = std::find_if(std::begin(allGroups), std::end(allGroups), of);
    const Group* last = std::find_if_not(first, std::end(allGroups), of);
    return {first, last};
}

bool canBeAbsent(Service service) {
    return rowOf(service).canBeAbsent;
}

std::vector<Place> placesOf(int adapter) {
    std::vector<Place> places;
    for (const ServiceRow& row : services)
        for (int i = 0; i < row.count; ++i) places.push_back({row.service, adapter, i});
    return places;
}

std::string nameOf(const Place& place) {
    const ServiceRow& row = rowOf(place.service);
    if (place.service == Service::adapter) return fmt::format("{}{}", row.name, place.adapter + 1);
    return row.numbered ? fmt::format("{}{}", row.name, place.instance + 1) : row.name;
}

std::string pathOf(const Place& place) {
    const std::string adapter = nameOf({Service::adapter, place.adapter, 0});
    return place.service == Service::adapter ? adapter : adapter + '/' + nameOf(place);
}

}  // namespace metrics
