#include "ui/stats/ip1577page.h"

#include "model/statecodes.h"
#include "model/tvtypes.h"
#include "ui/stats/statslayouts.h"

namespace {

constexpr StatsField<IpStatsView> fields[] = {
    {"rxPackets", {.counter = "rxPackets", .withSign = true}},
    {"txPackets", {.counter = "txPackets", .withSign = true}},
    {"rxDropped", {.counter = "rxDropped", .withSign = true}},
    {"txDropped", {.counter = "txDropped", .withSign = true}},
};

using Row = IpRowView;
constexpr StatsColumn<Row> columns[] = {
    {"IP Address",
     "000.000.000.000",
     {.text = shown<&Row::ip, &ipAddress::GetFIPAddress>, .key = byBytes<&Row::ip>}},
    {"VPI/VCI", signedVciSample, {.text = shown<&Row::vci, vciText>, .key = byNumber<&Row::vci>}},
    {"State",
     "Waiting for InARP response",
     {.text = shown<&Row::state, LmacStateToString>},
     "Waiting for VCC connection"},
    {"Tx Packets", counterSample, {.counter = "txPackets"}},
    {"Rx Packets", counterSample, {.counter = "rxPackets"}},
    {"Network Prefix", prefixSample, {.text = remotePrefixText, .key = remotePrefixKey}},
    {"ESI/Selector", esiSample, {.text = remoteEsiText, .key = remoteEsiKey}},
};

constexpr ShownState states[] = {{"stateLamp", "state"}};

}  // namespace

IP1577PGConnectionTBL::IP1577PGConnectionTBL(zTable& table, const StatsSource& source)
    : KeyedTable(
          table, columns, metrics::tableOf(metrics::Service::ip, "connections"),
          [](const IpRowView& row) { return row.vci(); }, 10),
      query_(source.channel, source.adapter) {}

bool IP1577PGConnectionTBL::UpdateDisplay(int index, bool clear) {
    query_.setUnit(static_cast<std::uint8_t>(index));
    return fill(query_, clear);
}

DStatsDlgIP1577PG::DStatsDlgIP1577PG(const StatsSource& source)
    : StatsPage(source, ip1577StatsLayout), query_(source.channel, source.adapter),
      fields_(board(), metrics::Service::ip, fields), lamp_(board(), "stateLamp"),
      table_(board().control<zTable>("connectionTable"), source) {
    counts(states, fields_, table_);
}

void DStatsDlgIP1577PG::refresh(bool clear) {
    const bool filled = UpdateDisplay(0, clear) && table_.UpdateDisplay(0, clear);
    if (!filled && !cut()) table_.empty();
}

bool DStatsDlgIP1577PG::UpdateDisplay(int index, bool clear) {
    query_.setUnit(static_cast<std::uint8_t>(index));
    const IpStateView reply = query_.GetState();
    if (cut()) return false;
    const std::uint32_t state = reply.state();
    lamp_.show(serviceLook(state != ipAbsent, state == ipRunning),
               serviceWords(reply, state, IpStateToString(state)));
    const IpStatsView stats = state != ipAbsent ? query_.GetStats() : IpStatsView();
    if (cut()) return false;
    fields_.show(stats, clear);
    return static_cast<bool>(stats);
}
