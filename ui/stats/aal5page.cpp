#include "ui/stats/aal5page.h"

#include "model/statecodes.h"
#include "toolkit/controls/statics.h"
#include "ui/stats/statslayouts.h"

namespace {

constexpr StatsField<AalStatsView> counters[] = {
    {"rxPackets", {.counter = counted<&AalStatsView::rxPackets>}},
    {"rxCells", {.counter = counted<&AalStatsView::rxCells>}},
    {"txPackets", {.counter = counted<&AalStatsView::txPackets>}},
    {"txCells", {.counter = counted<&AalStatsView::txCells>}},
    {"rxDropped", {.counter = counted<&AalStatsView::rxDropped>}},
    {"rxFrameErrors", {.counter = counted<&AalStatsView::rxFrameErrors>}},
    {"txDropped", {.counter = counted<&AalStatsView::txDropped>}},
    {"invalidVpis", {.counter = counted<&AalStatsView::invalidVpis>}},
    {"invalidVcis", {.counter = counted<&AalStatsView::invalidVcis>}},
    {"rxCellErrors", {.counter = counted<&AalStatsView::rxCellErrors>}},
};

constexpr struct {
    std::uint32_t kind;
    const char* caption;
} linkKinds[] = {
    {link25, "25 Mb/s"}, {linkMultimode, "OC3c MM"}, {linkSingleMode, "OC3c SM"}, {link155Utp, "155 UTP"}};

// A lamp is lit while there is no such alarm.
using Alarms = SuniStatsView;
constexpr struct {
    const char* name;
    bool (*clear)(const Alarms& reply);
} lamps[] = {
    {"losLamp",
     [](const Alarms& a) { return (a.linkKind() == link25 ? a.linkAlarm() : a.lossOfSignal()) == 0; }},
    {"lofLamp", [](const Alarms& a) { return a.lossOfFrame() == 0; }},
    {"oofLamp", [](const Alarms& a) { return a.outOfFrame() == 0; }},
    // This one and lopLamp mean nothing without frames.
    {"ferfLamp", [](const Alarms& a) { return a.farEndFailure() == 0 && a.lossOfFrame() == 0; }},
    {"aisLamp", [](const Alarms& a) { return a.alarmIndication() == 0; }},
    {"lopLamp", [](const Alarms& a) { return a.lossOfPointer() == 0 && a.lossOfFrame() == 0; }},
};

}  // namespace

DStatsDlgAAL5PG::DStatsDlgAAL5PG(const StatsSource& source)
    : StatsPage(source, aal5StatsLayout), query_(source.channel, source.adapter),
      counters_(board(), counters) {
    for (const auto& lamp : lamps) lamps_.emplace_back(board().control<zLamp>(lamp.name));
}

void DStatsDlgAAL5PG::UpdateDisplay(int index, bool clear) {
    query_.setUnit(static_cast<std::uint8_t>(index));
    if (alarms_) {
        if (const SuniStatsView reply = query_.GetSuniStats())
            showAlarms(reply);
        else if (cut())
            return;
        else if (old())
            for (myBitmapButton& lamp : lamps_) lamp.show(LampLook::greyed);
    }
    if (const AalStatsView reply = query_.GetAalStats())
        counters_.show(reply, clear);
    else
        keptOldValues();
}

void DStatsDlgAAL5PG::countAnew() {
    counters_.countAnew();
    alarms_ = true;  // the driver that has come may know others
    linkKindShown_ = false;
}

void DStatsDlgAAL5PG::showAlarms(const SuniStatsView& reply) {
    if (!linkKindShown_) showLinkKind(reply.linkKind());
    linkKindShown_ = true;
    alarms_ = reply.valid() != 0 || reply.linkKind() == link25;
    for (std::size_t i = 0; i < lamps_.size(); ++i)
        lamps_[i].show(!alarms_ ? LampLook::greyed : lamps[i].clear(reply) ? LampLook::lit : LampLook::unlit);
}

void DStatsDlgAAL5PG::showLinkKind(std::uint32_t kind) {
    const char* caption = "Unknown";
    for (const auto& known : linkKinds)
        if (known.kind == kind) caption = known.caption;
    board().control<zGroupBox>("sonet").setTitle(caption);
    board().control<zStatic>("losLampLabel").setText(kind == link25 ? "Link Up" : "LOS:");
}
