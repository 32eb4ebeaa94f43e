#include "sim/dump.h"

#include "sim/fieldtext.h"
#include "sim/show.h"

#include <algorithm>
#include <fmt/format.h>

namespace sim {

namespace {

template <class Record> void addSettings(std::string& text, std::string_view place, const Record& record) {
    text += fmt::format("config {} enabled {}\n", place, record.enabled ? 1 : 0);
    if (!record.enabled) return;
    for (const Setting<Record>& setting : settings<Record>())
        text += fmt::format("config {} {} {}\n", place, setting.name, settingText(setting, record));
}

void addSorted(std::string& text, std::vector<std::string> lines) {
    std::sort(lines.begin(), lines.end());
    for (const std::string& line : lines) text += line;
}

template <class Pvc> void addPvcs(std::string& text, std::string_view place, const std::vector<Pvc>& pvcs) {
    std::vector<std::string> lines;
    lines.reserve(pvcs.size());
    for (const Pvc& pvc : pvcs) {
        // Zeros in front, so that the order of the texts is that of the numbers.
        std::string line = fmt::format("config {} pvc {:05}", place, pvc.vci);
        for (const Setting<Pvc>& setting : settings<Pvc>())
            line += fmt::format(" {}={}", setting.name, settingText(setting, pvc));
        lines.push_back(line + "\n");
    }
    addSorted(text, std::move(lines));
}

void addMappings(std::string& text, int adapter, const std::vector<Mapping>& mappings) {
    std::vector<std::string> lines;
    lines.reserve(mappings.size());
    for (const Mapping& m : mappings)
        lines.push_back(fmt::format("config lecs {} mapping {} les {}.{}\n", adapter,
                                    m.client.GetF2EsiSelector(), adapter, m.les + 1));
    addSorted(text, std::move(lines));
}

// As the parameter file has them; no request changes them.
void addSignalling(std::string& text, int place, const AtmSig& sig) {
    const struct {
        std::string_view name;
        std::int32_t value;
    } rows[] = {{"uniRevision", sig.uniRevision},
                {"addressRegistration", sig.addressRegistration},
                {"portChangeDetect", sig.portChangeDetect},
                {"registerOtherPrefixes", sig.registerOtherPrefixes}};
    for (const auto& row : rows) text += fmt::format("config sig {} {} {}\n", place, row.name, row.value);
    text += fmt::format("config sig {} prefix {}\n", place, sig.address.GetFNetworkPrefix());
}

std::string placeOf(std::string_view target, int units, Instance where) {
    if (units == 0) return std::string(target);
    if (units == 1) return fmt::format("{} {}", target, where.adapter + 1);
    return fmt::format("{} {}.{}", target, where.adapter + 1, where.unit + 1);
}

void addReplies(std::string& text, const State& state, const Request& r, Instance where) {
    const std::string place = placeOf(r.target, targetUnits(r.target), where);
    if (r.shape == Shape::Table) {
        const Rows rows(state, r.id, where.adapter, where.unit);
        text += fmt::format("state {} rows {}\n", place, rows.count());
        for (std::size_t i = 0; i < rows.count(); ++i)
            text += fmt::format("state {} row {}{}\n", place, i + 1, showRow(state, r, rows, where, i));
    }
    if (r.shape != Shape::Single) return;
    for (std::size_t i = 0; i < r.fields.size(); ++i)
        text +=
            fmt::format("state {} {} {}\n", place, r.fields[i].name,
                        fieldText(r.fields[i], currentBytes(state, {r.id, where.adapter, where.unit, 0, i})));
}

}  // namespace

std::string dumpConfig(const State& state) {
    std::string text;
    const AtmDevices& config = state.config();
    for (std::size_t a = 0; a < adapterCount; ++a) {
        const int number = static_cast<int>(a) + 1;
        if (!state.present(number - 1)) continue;
        text += fmt::format("config adapter {} interrupt {}\n", number, config.interruptNumber[a]);
        addSignalling(text, number, config.sig[a]);
        for (std::size_t u = 0; u < lecCount; ++u) {
            const std::string place = fmt::format("lec {}.{}", number, u + 1);
            addSettings(text, place, config.lec[a][u]);
            addPvcs(text, place, config.lec[a][u].pvcs);
        }
        for (std::size_t u = 0; u < lesCount; ++u)
            addSettings(text, fmt::format("les {}.{}", number, u + 1), config.les[a][u]);
        const std::string lecs = fmt::format("lecs {}", number), ip = fmt::format("ip {}", number);
        addSettings(text, lecs, config.lecs[a]);
        if (config.lecs[a].enabled) addMappings(text, number, state.mappings[a]);
        addSettings(text, ip, config.ip1577[a]);
        addPvcs(text, ip, config.ip1577[a].pvcs);
    }
    return text;
}

std::string dumpState(const State& state) {
    std::string text = fmt::format("state clock {:.3f}\n", static_cast<double>(state.now()) / 1000);
    for (const TraceSwitch& trace : state.traces)
        text += fmt::format("state trace {} {}\n", trace.name, trace.on ? 1 : 0);
    for (const Request& r : requests())
        if (r.target == "driver") addReplies(text, state, r, {});
    for (int a = 0; a < adapterCount; ++a) {
        if (!state.present(a)) continue;
        for (const Request& r : requests())
            if (r.target != "driver")
                for (int u = 0; u < std::max<int>(r.units, 1); ++u) addReplies(text, state, r, {a, u});
    }
    for (const auto& [place, bytes] : state.forced) {
        const Request& r = request(place.request);
        const std::string row = place.row ? fmt::format(" row {}", place.row) : "";
        text += fmt::format("forced {}{} {} {}\n",
                            placeOf(r.target, targetUnits(r.target), {place.adapter, place.unit}), row,
                            r.fields[place.field].name, fieldText(r.fields[place.field], bytes));
    }
    for (const auto& [key, count] : state.forcedRows) {
        const Request& r = request(std::get<0>(key));
        text += fmt::format("forced {} rows {}\n",
                            placeOf(r.target, targetUnits(r.target), {std::get<1>(key), std::get<2>(key)}),
                            count);
    }
    return text;
}

}  // namespace sim
