#include "ui/stats/lesstatspage.h"

#include "model/statecodes.h"
#include "model/tvtypes.h"
#include "toolkit/controls/tabstrip.h"
#include "ui/stats/statslayouts.h"

namespace {

using Stats = LesStatsView;
constexpr StatsField<Stats> fields[] = {
    {"networkPrefix", {.text = prefixText}},
    {"esiSelector", {.text = esiText}},
    {"busNetworkPrefix", {.text = shown<&Stats::busAddress, &atmAddress::GetFNetworkPrefix>}},
    {"busEsiSelector", {.text = shown<&Stats::busAddress, &atmAddress::GetFESISelector>}},
    {"elanName", {.text = shown<&Stats::elanName>}},
    {"mtu", {.text = shown<&Stats::mtuClass, MtuTypeToString>}},
    {"elanType", {.text = shown<&Stats::elanType, ElanTypeToString>}},
};

using Row = LesRowView;
constexpr StatsColumn<Row> columns[] = {
    {"LD Address",
     macSample,
     {.text = shown<&Row::mac, &macAddress::GetFMacAddress>, .key = byBytes<&Row::mac>}},
    {"State", "Signalling A", {.text = shown<&Row::state, BusStateToString>}, "Signalling B"},
    {"Ctl Dir VCI", vciSample, {.text = shown<&Row::controlVci, vciText>, .key = byNumber<&Row::controlVci>}},
    {"CD Tx Pkts", counterSample, {.counter = "controlDirectTxPackets"}},
    {"CD Rx Pkts", counterSample, {.counter = "controlDirectRxPackets"}},
    {"Mul Snd VCI",
     vciSample,
     {.text = shown<&Row::multicastVci, vciText>, .key = byNumber<&Row::multicastVci>}},
    {"MSTx Pkts", counterSample, {.counter = "multicastSendTxPackets"}},
    {"MS Rx Pkts", counterSample, {.counter = "multicastSendRxPackets"}},
    {"Network Prefix", prefixSample, {.text = prefixText, .key = prefixKey}},
    {"ESI/Selector", esiSample, {.text = esiText, .key = esiKey}},
};

constexpr ShownState states[] = {{"stateLamp", "state"}};

}  // namespace

LESPGClientTBL::LESPGClientTBL(zTable& table, const StatsSource& source)
    : KeyedTable(
          table, columns, metrics::tableOf(metrics::Service::les, "clients"),
          [](const LesRowView& row) { return row.mac(); }, 4),
      query_(source.channel, source.adapter) {}

bool LESPGClientTBL::UpdateDisplay(int les, bool clear) {
    query_.setUnit(static_cast<std::uint8_t>(les));
    return fill(query_, clear, les);
}

DStatsDlgLESPG::DStatsDlgLESPG(const StatsSource& source)
    : StatsPage(source, lesStatsLayout), query_(source.channel, source.adapter),
      fields_(board(), metrics::Service::les, fields), lamp_(board(), "stateLamp"),
      table_(board().control<zTable>("clientTable"), source) {
    counts(states, table_);
    board().control<zTabStrip>("lesTabs").onSelect = [this](int les) { selChangeLesTB(les); };
}

void DStatsDlgLESPG::refresh(bool clear) {
    const bool filled = UpdateDisplay(les_) && table_.UpdateDisplay(les_, clear);
    if (!cut()) {
        shown_ = les_;
        if (!filled) table_.empty();
    } else if (shown_ != les_) {
        showNothing();
    }
}

void DStatsDlgLESPG::showNothing() {
    lamp_.show(LampLook::greyed, {});
    fields_.blank();
    table_.empty();
}

bool DStatsDlgLESPG::UpdateDisplay(int les) {
    query_.setUnit(static_cast<std::uint8_t>(les));
    const LesStateView reply = query_.GetState();
    if (cut()) return false;
    const std::uint32_t state = reply.state();
    const bool present = state != lesAbsent, flag = reply.flag() != 0;
    lamp_.show(serviceLook(present, state == lesServing && flag),
               serviceWords(reply, state, LesStateToString(state, flag)));
    const LesStatsView stats = present ? query_.GetStats() : LesStatsView();
    if (cut()) return false;
    fields_.show(stats);
    return static_cast<bool>(stats);
}
