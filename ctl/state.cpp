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

// ---- values ----

struct Printed {
    Json json;
    std::string text;
};

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

Tree leaf(const std::string& where, const metrics::Value& value) {
    Printed printed = std::visit([](const auto& v) { return print(v); }, value);
    return {std::move(printed.json), {settingLine(where, printed.text)}};
}

// ---- readings ----

Tree tableTree(const Reading& reading, const Group& group, const std::string& where) {
    if (const auto why = reading.missing(group)) return leaf(where, *why);
    Tree rows = Tree::array();
    const std::size_t count = reading.rows(group);
    for (std::size_t i = 0; i < count; ++i) {
        Tree row;
        for (const Metric& metric : group.metrics)
            row.put(metric.name,
                    leaf(fmt::format("{}[{}].{}", where, i, metric.name), reading.value(group, metric, i)));
        rows.add(std::move(row));
    }
    return rows;
}

// Puts what a reading has into the tree of its adapter or service.
void putReading(const Reading& reading, Tree& tree) {
    const std::string path = metrics::pathOf(reading.place()) + '.';
    const auto groups = metrics::groupsOf(reading.place().service);
    for (const Group& group : reading.absent() ? groups.first(1) : groups) {
        if (group.isTable()) {
            tree.put(group.table, tableTree(reading, group, path + group.table));
            continue;
        }
        for (const Metric& metric : group.metrics)
            if (!reading.absent() || metric.kind == metrics::Kind::state)
                tree.put(metric.name, leaf(path + metric.name, reading.value(group, metric)));
    }
}

// ---- what is asked ----

void addPlaces(const std::string& path, std::vector<Place>& places) {
    const std::vector<ServiceId> services = readPath(path);
    const bool whole = path.find('/') == path.npos;
    for (const Place& place : metrics::placesOf(services.front().adapter))
        if (whole || metrics::pathOf(place) == services.front().name().path) places.push_back(place);
}

bool reports(const Discovery& found, int adapter) {
    return std::ranges::count(found.adapters, adapter, &FoundAdapter::index) > 0;
}

// Whether the driver has said which adapters there are. When there is no driver nobody is asked.
bool knowsAdapters(Session& session) {
    const Discovery& found = session.discovery();
    if (found.complete) return !found.adapters.empty() || session.channel().outcome() == Outcome::success;
    if (session.channel().outcome() == Outcome::absent) throw session.noDriver();
    return false;
}

// The complaint, and the status, about what the driver did not give.
void complain(std::span<const metrics::Reader::Debt> owed, Output& output) {
    const auto isSilent = [](const auto& debt) { return debt.why == metrics::Unknown::silent; };
    auto worst = std::ranges::find_if(owed, isSilent);
    output.status = worst == owed.end() ? Status::refused : Status::silent;
    if (worst == owed.end()) worst = owed.begin();
    output.where = metrics::pathOf(worst->place);
    output.message = fmt::format("{}: {}", output.where, metrics::wordsOf(worst->why));
    if (worst->why == metrics::Unknown::refused) output.message += fmt::format(" ({})", worst->resp);
}

}  // namespace

Output showState(Session& session, const std::vector<std::string>& paths) {
    std::vector<Place> places;
    FirstFailure first;
    for (const std::string& path : paths) first.of([&] { addPlaces(path, places); });
    first.raise();
    const bool known = knowsAdapters(session);
    const Discovery& found = session.discovery();
    for (const Place& place : places)
        if (known && !reports(found, place.adapter)) {
            const std::string adapter = adapterName(place.adapter);
            throw Failure(Status::notThere, fmt::format("the driver reports no {}", adapter), adapter);
        }
    if (paths.empty())
        for (const FoundAdapter& adapter : found.adapters) addPlaces(adapterName(adapter.index), places);

    Output output;
    metrics::Reader reader(session.channel());
    if (!found.complete) reader.stop();
    std::map<int, Tree> adapters;
    std::vector<Place> done;
    for (const Place& place : places) {
        if (std::ranges::count(done, place)) continue;
        done.push_back(place);
        const Reading reading = reader.read(place);
        Tree& adapter = adapters[place.adapter];
        if (place.service == metrics::Service::adapter) {
            putReading(reading, adapter);
            continue;
        }
        Tree service;
        putReading(reading, service);
        adapter.put(metrics::nameOf(place), std::move(service));
    }
    for (auto& [adapter, tree] : adapters) output.tree.put(adapterName(adapter), std::move(tree));

    if (!reader.owed().empty())
        complain(reader.owed(), output);
    else if (!found.complete)
        output.status = Status::silent, output.message = "the driver does not answer";
    else if (!known && paths.empty())
        output.status = Status::refused,
        output.message = "the driver refuses to say which adapters there are";
    return output;
}
