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
    {"LD Address", macSample, {.text = shown<&Row::mac, &macAddress::GetFMacAddress>}},
    {"State", "Signalling A", {.text = shown<&Row::state, BusStateToString>}, "Signalling B"},
    {"Ctl Dir VCI", vciSample, {.text = shown<&Row::controlVci, vciText>}},
    {"CD Tx Pkts", counterSample, {.counter = counted<&Row::controlTx>}},
    {"CD Rx Pkts", counterSample, {.counter = counted<&Row::controlRx>}},
    {"Mul Snd VCI", vciSample, {.text = shown<&Row::multicastVci, vciText>}},
    {"MSTx Pkts", counterSample, {.counter = counted<&Row::multicastTx>}},
    {"MS Rx Pkts", counterSample, {.counter = counted<&Row::multicastRx>}},
    {"Network Prefix", prefixSample, {.text = prefixText}},
    {"ESI/Selector", esiSample, {.text = esiText}},
};

}  // namespace

LESPGClientTBL::LESPGClientTBL(zTable& table, const StatsSource& source)
    : KeyedTable(
          table, columns, [](const LesRowView& row) { return row.mac(); }, 4),
      query_(source.query<lesInfo>()) {}

bool LESPGClientTBL::UpdateDisplay(int les, bool clear) {
    if (!query_) return false;
    query_->setUnit(static_cast<std::uint8_t>(les));
    return fill(query_->GetEntireTable(), clear);
}

DStatsDlgLESPG::DStatsDlgLESPG(StatsSource& source)
    : StatsPage(source, lesStatsLayout), query_(source.query<lesInfo>()), fields_(board(), fields),
      lamp_(board().control<zLamp>("stateLamp")), table_(board().control<zTable>("clientTable"), source) {
    board().control<zTabStrip>("lesTabs").onSelect = [this](int les) { selChangeLesTB(les); };
    fillOnce(source);
}

void DStatsDlgLESPG::refresh(bool clear) {
    if (!UpdateDisplay(les_) || !table_.UpdateDisplay(les_, clear)) table_.empty();
}

bool DStatsDlgLESPG::UpdateDisplay(int les) {
    query_->setUnit(static_cast<std::uint8_t>(les));
    const LesStateView reply = query_->GetState();
    const bool present = reply.state() != lesAbsent;
    lamp_.show(serviceLook(present, reply.state() == lesServing && reply.flag() != 0));
    const LesStatsView stats = present ? query_->GetStats() : LesStatsView();
    fields_.show(stats);
    return static_cast<bool>(stats);
}
