#include "ui/stats/signallingpage.h"

#include "model/statecodes.h"
#include "model/tvtypes.h"
#include "ui/stats/statslayouts.h"

namespace {

constexpr StatsField<LinkStateView> stateFields[] = {
    {"ilmi", {.text = shown<&LinkStateView::ilmi, IlmiStateToString>}},
    {"saal", {.text = shown<&LinkStateView::saal, SaalStateToString>}},
    {"signalling", {.text = shown<&LinkStateView::signalling, SigStateToString>}},
};

constexpr StatsField<LinkStateView> addressFields[] = {
    {"networkPrefix", {.text = prefixText}},
    {"esiSelector", {.text = esiText}},
};

constexpr struct {
    const char* name;
    std::int16_t (LinkStateView::*state)() const;
    int (*colour)(std::int16_t state);
    const char* (*words)(std::int16_t state);
} lamps[] = {
    {"ilmiLamp", &LinkStateView::ilmi, IlmiStateToColor, IlmiStateToString},
    {"saalLamp", &LinkStateView::saal, SaalStateToColor, SaalStateToString},
    {"signallingLamp", &LinkStateView::signalling, SigStateToColor, SigStateToString},
};

LampLook lookOf(int colour) {
    return colour == lampTransition ? LampLook::greyed : colour == lampUp ? LampLook::lit : LampLook::unlit;
}

bool registered(const LinkStateView& reply) {
    return reply.ilmi() == ilmiRegistered || reply.ilmi() == ilmiStatic;
}

// The circuits of the table, in the order of its rows.
constexpr StatsRowName circuits[] = {{"ILMI", "ilmi"}, {"Signalling", "signalling"}};
constexpr std::uint16_t circuitVcis[] = {16, 5};

constexpr StatsColumn<VcRowView> columns[] = {
    {"VPI/VCI", vciSample, {.text = shown<&VcRowView::vci, vciText>}},
    {"Frames In", counterSample, {.counter = "RxFrames", .read = counted<&VcRowView::rx>}},
    {"Frames Out", counterSample, {.counter = "TxFrames", .read = counted<&VcRowView::tx>}},
};

constexpr ShownState shownStates[] = {
    {"ilmiLamp", "ilmiState"}, {"saalLamp", "saalState"}, {"signallingLamp", "signallingState"},
    {"ilmi", "ilmiState"},     {"saal", "saalState"},     {"signalling", "signallingState"},
};

}  // namespace

SignallingPGSigStatsTBL::SignallingPGSigStatsTBL(zTable& table, const StatsSource& source)
    : NamedRowsTable(table, columns, metrics::Service::signalling, circuits, "Signalling"),
      query_(source.channel, source.adapter) {}

bool SignallingPGSigStatsTBL::UpdateDisplay(int index, bool clear, bool old) {
    query_.setUnit(static_cast<std::uint8_t>(index));
    // Both circuits are among the first 16 rows.
    const auto circuitTable = query_.GetTable(1, 16);
    if (!circuitTable) return false;
    if (query_.sameTable() && looked_ && !clear && !old) return true;
    looked_ = true;
    for (std::size_t i = 0; i < std::size(circuitVcis); ++i) {
        const VcRowView row = circuitTable.size() > 1 ? query_.GetVciEntry(circuitVcis[i]) : VcRowView();
        if (!row && old) emptyRow(i);
        if (!row || (!shown_.update(i, row.bytes()) && !clear)) continue;
        writeNamedRow(static_cast<int>(i) + 1, row, baselines_[i], clear);
    }
    return true;
}

void SignallingPGSigStatsTBL::emptyRow(std::size_t circuit) {
    shown_.forget(circuit);
    for (int column = 1; column <= static_cast<int>(std::size(columns)); ++column)
        SetCellText({column, static_cast<int>(circuit) + 1}, "");
}

DStatsDlgSignallingPG::DStatsDlgSignallingPG(const StatsSource& source)
    : StatsPage(source, signallingStatsLayout), query_(source.channel, source.adapter),
      states_(board(), metrics::Service::signalling, stateFields),
      address_(board(), metrics::Service::signalling, addressFields),
      table_(board().control<zTable>("signallingTable"), source) {
    for (const auto& lamp : lamps) lamps_.emplace_back(board(), lamp.name);
    counts(shownStates, table_);
}

void DStatsDlgSignallingPG::refresh(bool clear) {
    if (clear)
        keptOldValues();  // of the states, which are not asked for
    else
        UpdateDisplay(0);
    if (cut()) return;
    if (!table_.UpdateDisplay(0, clear, old())) keptOldValues();
}

void DStatsDlgSignallingPG::UpdateDisplay(int index) {
    query_.setUnit(static_cast<std::uint8_t>(index));
    const LinkStateView reply = query_.GetLinkState();
    if (!reply) return keptOldValues();
    if (!shown_.update(reply.bytes())) return;
    for (std::size_t i = 0; i < lamps_.size(); ++i) {
        const std::int16_t state = (reply.*lamps[i].state)();
        lamps_[i].show(lookOf(lamps[i].colour(state)), {lamps[i].words(state), state});
    }
    states_.show(reply);
    if (registered(reply))
        address_.show(reply);
    else
        address_.blank();
}
