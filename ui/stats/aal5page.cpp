#include "ui/stats/aal5page.h"

#include "model/statecodes.h"
#include "toolkit/controls/statics.h"
#include "ui/stats/statslayouts.h"

namespace {

constexpr StatsField<AalStatsView> counters[] = {
    {"rxPackets", {.counter = "rxPackets"}},     {"rxCells", {.counter = "rxCells"}},
    {"txPackets", {.counter = "txPackets"}},     {"txCells", {.counter = "txCells"}},
    {"rxDropped", {.counter = "rxDropped"}},     {"rxFrameErrors", {.counter = "rxFrameErrors"}},
    {"txDropped", {.counter = "txDropped"}},     {"invalidVpis", {.counter = "invalidVpis"}},
    {"invalidVcis", {.counter = "invalidVcis"}}, {"rxCellErrors", {.counter = "rxCellErrors"}},
};

constexpr struct {
    std::uint32_t kind;
    const char* caption;
} linkKinds[] = {
    {link25, "25 Mb/s"}, {linkMultimode, "OC3c MM"}, {linkSingleMode, "OC3c SM"}, {link155Utp, "155 UTP"}};

// A lamp is lit while there is no such alarm.
struct Alarm {
    const char* lamp;
    std::uint32_t (SuniStatsView::*word)() const;
    const char *clear, *raised;
    bool needsFrames = false;  // it means nothing without them
};
constexpr Alarm alarms[] = {
    {"losLamp", &SuniStatsView::lossOfSignal, "No loss of signal", "Loss of signal"},
    {"lofLamp", &SuniStatsView::lossOfFrame, "No loss of frame", "Loss of frame"},
    {"oofLamp", &SuniStatsView::outOfFrame, "In frame", "Out of frame"},
    {"ferfLamp", &SuniStatsView::farEndFailure, "No far end receive failure", "Far end receive failure",
     true},
    {"aisLamp", &SuniStatsView::alarmIndication, "No alarm indication signal", "Alarm indication signal"},
    {"lopLamp", &SuniStatsView::lossOfPointer, "No loss of pointer", "Loss of pointer", true},
};
// A 25 Mbit/s link has one alarm of its own, in place of the first.
constexpr Alarm linkAlarm{"losLamp", &SuniStatsView::linkAlarm, "Link up", "Link down"};

constexpr ShownState alarmValues[] = {
    {"losLamp", "lossOfSignal"},   {"lofLamp", "lossOfFrame"},     {"oofLamp", "outOfFrame"},
    {"ferfLamp", "farEndFailure"}, {"aisLamp", "alarmIndication"}, {"lopLamp", "lossOfPointer"},
};
constexpr ShownState linkAlarmValues[] = {{"losLamp", "linkDown"}};

void showAlarm(myBitmapButton& lamp, const Alarm& alarm, const SuniStatsView& reply) {
    const std::uint32_t word = (reply.*alarm.word)();
    const bool unknown = alarm.needsFrames && reply.lossOfFrame() != 0;
    lamp.show(word == 0 && !unknown ? LampLook::lit : LampLook::unlit,
              {word      ? alarm.raised
               : unknown ? "Unknown during loss of frame"
                         : alarm.clear,
               word});
}

}  // namespace

DStatsDlgAAL5PG::DStatsDlgAAL5PG(const StatsSource& source)
    : StatsPage(source, aal5StatsLayout), query_(source.channel, source.adapter),
      counters_(board(), metrics::Service::adapter, counters) {
    for (const Alarm& alarm : alarms) lamps_.emplace_back(board(), alarm.lamp);
    counts(alarmValues, counters_);
}

void DStatsDlgAAL5PG::UpdateDisplay(int index, bool clear) {
    query_.setUnit(static_cast<std::uint8_t>(index));
    if (alarms_) {
        if (const SuniStatsView reply = query_.GetSuniStats())
            showAlarms(reply);
        else if (cut())
            return;
        else if (old())
            showNoAlarms();
    }
    if (const AalStatsView reply = query_.GetAalStats())
        counters_.show(reply, clear);
    else
        keptOldValues();
}

void DStatsDlgAAL5PG::driverCame() {
    shownAlarms_.forget();
    alarms_ = true;
    linkKindShown_ = false;
}

void DStatsDlgAAL5PG::showNoAlarms() {
    shownAlarms_.forget();
    for (myBitmapButton& lamp : lamps_) lamp.show(LampLook::greyed, {notTold});
}

void DStatsDlgAAL5PG::showAlarms(const SuniStatsView& reply) {
    if (!shownAlarms_.update(reply.bytes())) return;
    if (!linkKindShown_) showLinkKind(reply.linkKind());
    linkKindShown_ = true;
    alarms_ = reply.valid() != 0 || reply.linkKind() == link25;
    for (std::size_t i = 0; i < lamps_.size(); ++i) {
        if (!alarms_)
            lamps_[i].show(LampLook::greyed, {"This link reports no alarms"});
        else
            showAlarm(lamps_[i], i == 0 && reply.linkKind() == link25 ? linkAlarm : alarms[i], reply);
    }
}

void DStatsDlgAAL5PG::showLinkKind(std::uint32_t kind) {
    const char* caption = "Unknown";
    for (const auto& known : linkKinds)
        if (known.kind == kind) caption = known.caption;
    board().control<zGroupBox>("sonet").setTitle(caption);
    setStates(kind == link25 ? std::span<const ShownState>(linkAlarmValues) : alarmValues);
    board().control<zStatic>("losLampLabel").setText(kind == link25 ? "Link Up" : "LOS:");
}
