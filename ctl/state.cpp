#include "ctl/state.h"

#include "ctl/listing.h"
#include "ctl/paths.h"
#include "ctl/settings.h"
#include "metrics/reading.h"
#include "platform/safetext.h"

#include <algorithm>
#include <fmt/format.h>
#include <map>

using metrics::Group;
using metrics::Metric;
using metrics::Place;
using metrics::Reading;

namespace {

Printed print(metrics::Unknown) {
    return {nullptr, "unknown"};
}
Printed print(std::uint32_t number) {
    return {number, std::to_string(number)};
}
Printed print(bool flag) {
    return {flag, flag ? "true" : "false"};
}
Printed print(const metrics::State& state) {
    const std::string code = fmt::format("state {}", state.code);
    if (!state.words) return {{{"code", state.code}, {"text", nullptr}}, code};
    return {{{"code", state.code}, {"text", state.words}}, fmt::format("{}, {}", state.words, code)};
}
Printed print(const metrics::Unnamed& unnamed) {
    const std::string code = fmt::format("code {}", unnamed.code);
    return {code, code};
}
Printed print(const std::string& text) {
    const std::string safe = platform::escaped(text);
    return {safe, safe};
}

Printed print(const metrics::Value& value) {
    return std::visit([](const auto& v) { return print(v); }, value);
}

}  // namespace

// ---- readings ----

Printed StatePrinter::print(const Reading& reading, const Group& group, const Metric& metric,
                            std::size_t row) const {
    return ::print(reading.value(group, metric, row));
}

std::string StatePrinter::line(const std::string& where, const std::string& text) const {
    return settingLine(where, text);
}

Tree StatePrinter::leaf(const std::string& where, Printed printed) const {
    return {std::move(printed.json), {line(where, printed.text)}};
}

Tree StatePrinter::table(const Reading& reading, const Group& group, const std::string& where) const {
    if (const auto why = reading.missing(group)) return leaf(where, ::print(*why));
    Tree rows = Tree::array();
    const std::size_t count = reading.rows(group);
    for (std::size_t i = 0; i < count; ++i) {
        Tree row;
        for (const Metric& metric : group.metrics) {
            const std::string name = nameOf(metric);
            row.put(name, leaf(fmt::format("{}[{}].{}", where, i, name), print(reading, group, metric, i)));
        }
        rows.add(std::move(row));
    }
    return rows;
}

void StatePrinter::put(const Reading& reading, Tree& tree) const {
    const Place& place = reading.place();
    const std::string path = metrics::pathOf(place) + '.';
    const auto* const names = namesOf(place);
    const bool stateAlone = reading.absent() && !names;
    const auto groups = metrics::groupsOf(place.service);
    for (const Group& group : stateAlone ? groups.first(1) : groups) {
        if (group.isTable()) {
            if (!names || names->contains(group.table))
                tree.put(group.table, table(reading, group, path + group.table));
            else
                putRows(reading, group, tree);
            continue;
        }
        for (const Metric& metric : group.metrics) {
            if (names ? !names->contains(metric.name) : stateAlone && metric.kind != metrics::Kind::state)
                continue;
            const std::string name = nameOf(metric);
            tree.put(name, leaf(path + name, print(reading, group, metric, 0)));
        }
    }
}

Tree StatePrinter::tree(const std::vector<Reading>& readings) const {
    std::map<int, Tree> adapters;
    for (const Reading& reading : readings) {
        Tree& adapter = adapters[reading.place().adapter];
        if (reading.place().service == metrics::Service::adapter) {
            put(reading, adapter);
            continue;
        }
        Tree service;
        put(reading, service);
        adapter.put(metrics::nameOf(reading.place()), std::move(service));
    }
    Tree all;
    for (auto& [adapter, tree] : adapters) all.put(adapterName(adapter), std::move(tree));
    return all;
}

// ---- what is asked ----

std::vector<Place> placesAt(const std::string& path) {
    const std::vector<ServiceId> services = readPath(path);
    std::vector<Place> places = metrics::placesOf(services.front().adapter);
    if (path.find('/') != path.npos)
        std::erase_if(places, [&](const Place& place) {
            return metrics::pathOf(place) != services.front().name().path;
        });
    return places;
}

bool saysAdapters(const Discovery& found, const DriverChannel& channel) {
    return found.complete && (!found.adapters.empty() || channel.outcome() == Outcome::success);
}

void requireReported(const Discovery& found, const std::vector<Place>& places) {
    for (const Place& place : places)
        if (std::ranges::count(found.adapters, place.adapter, &FoundAdapter::index) == 0) {
            const std::string adapter = adapterName(place.adapter);
            throw Failure(Status::notThere, fmt::format("the driver reports no {}", adapter), adapter);
        }
}

void complain(const std::vector<metrics::Reader::Debt>& owed, Output& output) {
    if (owed.empty()) return;
    const auto isSilent = [](const auto& debt) { return debt.why == metrics::Unknown::silent; };
    auto worst = std::ranges::find_if(owed, isSilent);
    output.status = worst == owed.end() ? Status::refused : Status::silent;
    if (worst == owed.end()) worst = owed.begin();
    output.where = metrics::pathOf(worst->place);
    output.message = fmt::format("{}: {}", output.where, metrics::wordsOf(worst->why));
    if (worst->why == metrics::Unknown::refused) output.message += fmt::format(" ({})", worst->resp);
}

Output showState(Session& session, const std::vector<std::string>& paths) {
    std::vector<Place> places;
    const auto add = [&](const std::string& path) {
        for (const Place& place : placesAt(path))
            if (std::ranges::count(places, place) == 0) places.push_back(place);
    };
    FirstFailure first;
    for (const std::string& path : paths) first.of([&] { add(path); });
    first.raise();
    const Discovery& found = session.discovery();
    if (!found.complete && session.channel().outcome() == Outcome::absent) throw session.noDriver();
    const bool known = saysAdapters(found, session.channel());
    if (known) requireReported(found, places);
    if (paths.empty())
        for (const FoundAdapter& adapter : found.adapters) add(adapterName(adapter.index));

    Output output;
    metrics::Reader reader(session.channel());
    if (!found.complete) reader.stop();
    std::vector<Reading> readings;
    readings.reserve(places.size());
    for (const Place& place : places) readings.push_back(reader.read(place));
    output.tree = StatePrinter().tree(readings);

    if (!reader.owed().empty())
        complain(reader.owed(), output);
    else if (!found.complete)
        output.status = Status::silent, output.message = "the driver does not answer";
    else if (!known && paths.empty())
        output.status = Status::refused,
        output.message = "the driver refuses to say which adapters there are";
    return output;
}
