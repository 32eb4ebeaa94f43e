#include "ui/stats/lecstatspage.h"

#include "model/statecodes.h"
#include "model/tvtypes.h"
#include "platform/index.h"
#include "toolkit/controls/tabstrip.h"
#include "ui/stats/statslayouts.h"

namespace {

constexpr StatsField<LecStatsView> fields[] = {
    {"elanName", {.text = shown<&LecStatsView::elanName>}},
    {"macAddress", {.text = shown<&LecStatsView::mac, &macAddress::GetFMacAddress>}},
    {"elanType", {.text = shown<&LecStatsView::elanType, ElanTypeToString>}},
    {"mtu", {.text = shown<&LecStatsView::mtuClass, MtuTypeToString>}},
    {"networkPrefix", {.text = prefixText}},
    {"esiSelector", {.text = esiText}},
};

constexpr ShownState states[] = {{"stateLamp", "state"}};

constexpr StatsRowName lesBusRows[] = {{"Control Dir", "controlDirect"},
                                       {"Control Dist", "controlDistribute"},
                                       {"Multicast Send", "multicastSend"},
                                       {"Multicast Fwd", "multicastForward"}};
constexpr LecConnection connections[] = {LecConnection::controlDirect, LecConnection::controlDistribute,
                                         LecConnection::multicastSend, LecConnection::multicastForward};

constexpr StatsColumn<LesBusRow> lesBusColumns[] = {
    {"VPI/VCI", vciSample, {.text = shown<&LesBusRow::vci, vciText>}},
    {"Tx Packets",
     counterSample,
     {.counter = "TxPackets", .read = [](const LesBusRow& row) { return row.circuit.tx(); }}},
    {"Rx Packets",
     counterSample,
     {.counter = "RxPackets", .read = [](const LesBusRow& row) { return row.circuit.rx(); }}},
    {"NetworkPrefix", prefixSample, {.text = prefixText}},
    {"ESI/Selector", esiSample, {.text = esiText}},
};

constexpr StatsColumn<LecRowView> lecColumns[] = {
    {"MAC Address",
     macSample,
     {.text = shown<&LecRowView::mac, &macAddress::GetFMacAddress>, .key = byBytes<&LecRowView::mac>}},
    {"VPI/VCI", vciSample, {.text = shown<&LecRowView::vci, vciText>, .key = byNumber<&LecRowView::vci>}},
    {"Tx Packets", counterSample, {.counter = "txPackets"}},
    {"Rx Packets", counterSample, {.counter = "rxPackets"}},
    {"Network Prefix", prefixSample, {.text = remotePrefixText, .key = remotePrefixKey}},
    {"ESI/Selector", esiSample, {.text = remoteEsiText, .key = remoteEsiKey}},
};

}  // namespace

LECPGLES_BUSTBL::LECPGLES_BUSTBL(zTable& table, const StatsSource& source)
    : NamedRowsTable(table, lesBusColumns, metrics::Service::lec, lesBusRows, "Multicast Send"),
      query_(source.channel, source.adapter), circuits_(source.channel, source.adapter) {}

void LECPGLES_BUSTBL::rewrite() {
    shownStats_.forget();
}

void LECPGLES_BUSTBL::empty() {
    rewrite();
    shown_ = -1;
    StatsTable::empty();
}

bool LECPGLES_BUSTBL::UpdateDisplay(int lec, bool clear, bool old) {
    query_.setUnit(static_cast<std::uint8_t>(lec));
    const LecStatsView stats = query_.GetStats();
    if (!stats) return false;
    circuits_.setUnit(static_cast<std::uint8_t>(lec));
    const auto circuits = circuits_.GetEntireTable();
    if (!circuits_.answered()) return false;
    if (lec != shown_ || old) {
        empty();
        nameRows();
    }
    shown_ = lec;
    if (!shownStats_.update(stats.bytes()) && circuits && circuits_.sameTable() && !clear) return true;
    if (!circuits) shownStats_.forget();  // the counters are written when they come
    for (std::size_t i = 0; i < std::size(connections); ++i) {
        const std::uint16_t vci = stats.vci(connections[i]);
        if (vci == 0) continue;
        const LesBusRow row{vci, stats.address(connections[i]), circuits_.GetVciEntry(vci)};
        writeNamedRow(static_cast<int>(i) + 1, row, baselines_[asIndex(lec)][i], clear,
                      static_cast<bool>(row.circuit));
    }
    return true;
}

LECPGLECTBL::LECPGLECTBL(zTable& table, const StatsSource& source)
    : KeyedTable(
          table, lecColumns, metrics::tableOf(metrics::Service::lec, "connections"),
          [](const LecRowView& row) { return row.vci(); }, 20),
      query_(source.channel, source.adapter) {}

bool LECPGLECTBL::UpdateDisplay(int lec, bool clear) {
    query_.setUnit(static_cast<std::uint8_t>(lec));
    return fill(query_, clear, lec);
}

DStatsDlgLECPG::DStatsDlgLECPG(const StatsSource& source)
    : StatsPage(source, lecStatsLayout), query_(source.channel, source.adapter),
      fields_(board(), metrics::Service::lec, fields), lamp_(board(), "stateLamp"),
      lesBusTable_(board().control<zTable>("lesBusTable"), source),
      lecTable_(board().control<zTable>("lecTable"), source) {
    counts(states, lesBusTable_, lecTable_);
    board().control<zTabStrip>("lecTabs").onSelect = [this](int lec) { selChangeLecTB(lec); };
}

void DStatsDlgLECPG::refresh(bool clear) {
    showClient(clear);
    if (!cut())
        shown_ = lec_;
    else if (shown_ != lec_)
        showNothing();
}

void DStatsDlgLECPG::showClient(bool clear) {
    const int result = UpdateDisplay(lec_);
    if (cut()) return;
    const bool connected = result != 0 && lecTable_.UpdateDisplay(lec_, clear);
    if (cut()) return;
    if (!connected) lecTable_.empty();
    const bool joined = result == 2 && lesBusTable_.UpdateDisplay(lec_, clear, old());
    if (!joined && !cut()) lesBusTable_.empty();
}

void DStatsDlgLECPG::showNothing() {
    lamp_.show(LampLook::greyed, {});
    fields_.blank();
    lecTable_.empty();
    lesBusTable_.empty();
}

int DStatsDlgLECPG::UpdateDisplay(int lec) {
    query_.setUnit(static_cast<std::uint8_t>(lec));
    const LecStateView reply = query_.GetState();
    if (cut()) return 0;
    const std::uint32_t state = reply.state();
    const bool flag = reply.flag() != 0;
    lamp_.show(serviceLook(state != lecAbsent, state == lecJoined || (state == lecOnPvcs && flag)),
               serviceWords(reply, state, LecStateToString(state, flag)));
    const LecStatsView stats = state != lecAbsent ? query_.GetStats() : LecStatsView();
    if (cut()) return 0;
    fields_.show(stats);
    return state == lecAbsent ? 0 : state == lecJoined ? 2 : 1;
}
