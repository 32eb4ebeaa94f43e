#include "sim/show.h"

#include "sim/answer.h"
#include "sim/fieldtext.h"
#include "sim/peers.h"

#include <algorithm>
#include <fmt/format.h>

namespace sim {

namespace {

constexpr std::size_t mostRows = 100;  // of one table; a longer one is for "get ... row N"

std::string number(const State& state, Rid id, int adapter, int unit, std::size_t field) {
    return fieldText(request(id).fields[field], currentBytes(state, {id, adapter, unit, 0, field}));
}

void addTable(const State& state, const Request& r, Instance where, std::string& text) {
    const Rows rows(state, r.id, where.adapter, where.unit);
    text += fmt::format("{} rows {}\n", r.target, rows.count());
    for (std::size_t i = 0; i < std::min(rows.count(), mostRows); ++i)
        text += fmt::format("  row {}{}\n", i + 1, showRow(state, r, rows, where, i));
    if (rows.count() > mostRows) text += "  ...\n";
}

}  // namespace

std::string showAll(const State& state) {
    std::string text = fmt::format("driver {}, {} adapters\n", number(state, Rid::PackageRev, 0, 0, 0),
                                   number(state, Rid::BoardState, 0, 0, 0));
    const auto rowCount = [&](Rid table, int a, int u) { return Rows(state, table, a, u).count(); };
    for (int a = 0; a < adapterCount; ++a) {
        if (!state.present(a)) continue;
        text += fmt::format("adapter {} {} link {} vcs {}\n", a + 1, number(state, Rid::BoardMac, a, 0, 0),
                            number(state, Rid::SuniStats, a, 0, 0), rowCount(Rid::VcTable, a, 0));
        text += fmt::format("  sig {} ilmi {} saal {} signalling {}\n", a + 1,
                            number(state, Rid::SigLink, a, 0, 0), number(state, Rid::SigLink, a, 0, 1),
                            number(state, Rid::SigLink, a, 0, 2));
        for (int u = 0; u < lecCount; ++u)
            text += fmt::format("  lec {}.{} state {} elan \"{}\" connections {}\n", a + 1, u + 1,
                                number(state, Rid::LecState, a, u, 0), number(state, Rid::LecStats, a, u, 3),
                                rowCount(Rid::LecTable, a, u));
        for (int u = 0; u < lesCount; ++u)
            text += fmt::format("  les {}.{} state {} serves {} elan \"{}\" clients {}\n", a + 1, u + 1,
                                number(state, Rid::LesState, a, u, 0), number(state, Rid::LesState, a, u, 1),
                                number(state, Rid::LesStats, a, u, 4), rowCount(Rid::LesTable, a, u));
        text += fmt::format("  lecs {} state {} mappings {}\n", a + 1, number(state, Rid::LecsState, a, 0, 0),
                            rowCount(Rid::LecsTable, a, 0));
        text += fmt::format("  ip {} state {} connections {} pvcs {}\n", a + 1,
                            number(state, Rid::IpState, a, 0, 0), rowCount(Rid::IpTable, a, 0),
                            rowCount(Rid::IpPvcTable, a, 0));
    }
    return text;
}

std::string showRow(const State& state, const Request& table, const Rows& rows, Instance where,
                    std::size_t index) {
    std::vector<std::uint8_t> bytes(table.size);
    const Peer peer = rows.row(index);
    packFields(table, {state, where.adapter, where.unit, &peer}, static_cast<int>(index + 1), bytes);
    std::string text;
    for (const Field& field : table.fields)
        text += fmt::format(" {}={}", field.name,
                            fieldText(field, ConstBytes(bytes).subspan(field.offset, field.width)));
    return text;
}

std::string showInstance(const State& state, std::string_view target, Instance where) {
    std::string text;
    for (const Request& r : requests()) {
        if (r.target != target) continue;
        if (r.shape == Shape::Table) addTable(state, r, where, text);
        if (r.shape != Shape::Single) continue;
        for (std::size_t i = 0; i < r.fields.size(); ++i)
            text +=
                fmt::format("{} {}{}\n", r.fields[i].name, number(state, r.id, where.adapter, where.unit, i),
                            state.forced.contains({r.id, where.adapter, where.unit, 0, i}) ? "  (set)" : "");
    }
    return text;
}

std::string showFields() {
    std::string text;
    for (const Request& r : requests())
        for (const Field& field : r.fields)
            text +=
                fmt::format("{}{} {}  ({}, {} bytes)\n", r.target, r.shape == Shape::Table ? " row N" : "",
                            field.name, kindText(field.kind), field.width);
    return text;
}

}  // namespace sim
