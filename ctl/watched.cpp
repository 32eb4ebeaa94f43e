#include "ctl/watched.h"

#include "ctl/state.h"
#include "model/ui_types.h"
#include "platform/number.h"
#include "platform/safetext.h"

#include <algorithm>
#include <cctype>
#include <fmt/format.h>

using metrics::Group;
using metrics::Metric;
using metrics::Place;

namespace {

template <class Address> bool isText(const std::string& text, const char* (Address::*form)() const) {
    Address address;
    address = text;
    return text == (address.*form)();
}

// The key as its column prints it. Nothing: no row can have it.
std::optional<std::string> keyOf(const Group& group, std::string text) {
    for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    const auto number = platform::wholeNumber<std::uint16_t>(text);
    const bool isKey = group.keyBytes.length == 2   ? number && std::to_string(*number) == text
                       : group.keyBytes.length == 6 ? isText(text, &macAddress::GetFMacAddress)
                                                    : isText(text, &esiSelector::GetF2EsiSelector);
    return isKey ? std::optional(text) : std::nullopt;
}

bool hasName(const Group& group, const std::string& name) {
    return std::ranges::any_of(group.metrics, [&](const Metric& metric) { return name == metric.name; });
}

Watched& watchedAt(std::vector<Watched>& all, const Place& place) {
    const auto found = std::ranges::find(all, place, &Watched::place);
    return found != all.end() ? *found : all.emplace_back(Watched{place});
}

// "33", "33.vci" of a table. False: there is no such thing.
bool addRow(const Group& group, const std::string& text, Watched& watched) {
    const std::size_t dot = text.find('.');
    const auto key = keyOf(group, text.substr(0, dot));
    const std::string name = dot == text.npos ? "" : text.substr(dot + 1);
    if (!key || (dot != text.npos && !hasName(group, name))) return false;
    auto row = std::ranges::find_if(
        watched.rows, [&](const WatchedRow& each) { return each.group == &group && each.key == *key; });
    const bool isNew = row == watched.rows.end();
    if (isNew) row = watched.rows.insert(row, {&group, *key});
    if (dot == text.npos)
        row->names.clear();
    else if (isNew || !row->names.empty())
        row->names.insert(name);
    return true;
}

bool addName(const std::string& text, Watched& watched) {
    const std::size_t dot = text.find('.');
    const std::string name = text.substr(0, dot);
    for (const Group& group : metrics::groupsOf(watched.place.service)) {
        if (dot != text.npos && group.isTable() && name == group.table)
            return addRow(group, text.substr(dot + 1), watched);
        if (dot != text.npos || (group.isTable() ? name != group.table : !hasName(group, name))) continue;
        watched.names.insert(name);
        return true;
    }
    return false;
}

void addPath(const std::string& path, std::vector<Watched>& all) {
    const std::size_t dot = path.find('.');
    const std::vector<Place> places = placesAt(path.substr(0, dot));
    if (dot == path.npos)
        for (const Place& place : places) watchedAt(all, place).whole = true;
    else if (!addName(path.substr(dot + 1), watchedAt(all, places.front())))
        throw Failure(Status::usage, fmt::format("there is no value {}", platform::escaped(path)),
                      platform::escaped(path));
}

}  // namespace

bool Watched::wants(const Group& group) const {
    if (whole) return true;
    if (group.isTable())
        return names.contains(group.table) ||
               std::ranges::any_of(rows, [&](const WatchedRow& row) { return row.group == &group; });
    return std::ranges::any_of(group.metrics, [&](const Metric& m) { return names.contains(m.name); });
}

bool Watched::hasTable() const {
    return std::ranges::any_of(metrics::groupsOf(place.service), [&](const Group& group) {
        return group.isTable() && (whole || names.contains(group.table));
    });
}

std::vector<Watched> readWatched(const std::vector<std::string>& paths) {
    std::vector<Watched> all;
    FirstFailure first;
    for (const std::string& path : paths) first.of([&] { addPath(path, all); });
    first.raise();
    for (Watched& watched : all)
        std::erase_if(watched.rows, [&](const WatchedRow& row) {
            return watched.whole || watched.names.contains(row.group->table);
        });
    return all;
}
