#include "ui/stats/lecsstatspage.h"

#include "model/statecodes.h"
#include "model/tvtypes.h"
#include "ui/stats/statslayouts.h"

namespace {

using Stats = LecsStatsView;
constexpr StatsField<Stats> fields[] = {
    {"networkPrefix", {.text = prefixText}},
    {"esiSelector", {.text = esiText}},
    {"elanType", {.text = shown<&Stats::elanType, ElanTypeToString>}},
    {"etherMtu", {.text = shown<&Stats::etherMtuClass, MtuTypeToString>}},
    {"tokenRingMtu", {.text = shown<&Stats::tokenRingMtuClass, MtuTypeToString>}},
    {"validRequests", {.counter = "validRequests"}},
    {"invalidRequests", {.counter = "invalidRequests"}},
    {"rejected", {.counter = "rejectedRequests"}},
    {"connectionsMade", {.counter = "connectionsMade"}},
    {"connectionsOpen", {.counter = "connectionsOpen"}},
};

constexpr ShownState states[] = {{"stateLamp", "state"}, {"regLamp", "registered"}};

}  // namespace

DStatsDlgLECSPG::DStatsDlgLECSPG(const StatsSource& source)
    : StatsPage(source, lecsStatsLayout), query_(source.channel, source.adapter),
      fields_(board(), metrics::Service::lecs, fields), lamp_(board(), "stateLamp"),
      registered_(board(), "regLamp") {
    counts(states, fields_);
}

void DStatsDlgLECSPG::showRegistration(const LecsStatsView& stats, std::uint32_t state) {
    if (!stats)
        registered_.show(LampLook::greyed, {state == lecsAbsent ? LecsStateToString(state) : notTold});
    else if (stats.registered())
        registered_.show(LampLook::lit, {"registered", stats.registered()});
    else
        registered_.show(LampLook::unlit, {"not registered", 0});
}

bool DStatsDlgLECSPG::UpdateDisplay(int index, bool clear) {
    query_.setUnit(static_cast<std::uint8_t>(index));
    const LecsStateView reply = query_.GetState();
    if (cut()) return false;
    const std::uint32_t state = reply.state();
    lamp_.show(serviceLook(state != lecsAbsent, state == lecsRunning),
               serviceWords(reply, state, LecsStateToString(state)));
    const LecsStatsView stats = state != lecsAbsent ? query_.GetStats() : LecsStatsView();
    if (cut()) return false;
    showRegistration(stats, state);
    fields_.show(stats, clear);
    return static_cast<bool>(stats);
}
