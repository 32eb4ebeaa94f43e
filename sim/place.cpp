#include "sim/place.h"

#include "sim/answer.h"
#include "sim/fieldtext.h"
#include "sim/peers.h"

#include <algorithm>
#include <fmt/format.h>
#include <set>

namespace sim {

namespace {

std::string knownTargets() {
    std::set<std::string_view> names;
    for (const Request& r : requests())
        if (!r.fields.empty()) names.insert(r.target);
    return fmt::format("{}", fmt::join(names, ", "));
}

}  // namespace

int targetUnits(std::string_view target) {
    int units = 0;
    for (const Request& r : requests())
        if (r.target == target) units = std::max<int>(units, r.units);
    return units;
}

bool PlaceReader::fail(std::string reason) {
    error = std::move(reason);
    return false;
}

bool PlaceReader::next(std::string& word) {
    if (words_.empty()) return false;
    word = words_.front();
    words_ = words_.subspan(1);
    return true;
}

bool PlaceReader::target() {
    std::string word;
    if (!next(word)) return fail("a target is missing: one of " + knownTargets());
    for (const Request& r : requests())
        if (r.target == word && !r.fields.empty()) {
            targetName = r.target;
            return true;
        }
    return fail(fmt::format("no target \"{}\": one of {}", word, knownTargets()));
}

bool PlaceReader::instance() {
    const int units = targetUnits(targetName);
    if (units == 0) return true;
    std::string word;
    const std::string form = units > 1 ? fmt::format("ADAPTER.INSTANCE, 1.1 to {}.{}", adapterCount, units)
                                       : fmt::format("an adapter, 1 to {}", adapterCount);
    if (!next(word)) return fail(fmt::format("{} needs {}", targetName, form));
    const std::size_t dot = word.find('.');
    const auto adapter = wholeNumber(std::string_view(word).substr(0, dot));
    const auto unit =
        dot == std::string::npos ? wholeNumber("1") : wholeNumber(std::string_view(word).substr(dot + 1));
    if (!adapter || !unit || (units > 1) != (dot != std::string::npos) || *adapter < 1 ||
        *adapter > adapterCount || *unit < 1 || *unit > units)
        return fail(fmt::format("\"{}\" is no instance of {}: {}", word, targetName, form));
    where = {static_cast<int>(*adapter) - 1, static_cast<int>(*unit) - 1};
    if (!state_.present(where.adapter)) return fail(fmt::format("adapter {} is not there", *adapter));
    return true;
}

bool PlaceReader::row() {
    if (words_.empty() || words_.front() != "row") return true;
    std::string word;
    next(word);
    const auto number = next(word) ? wholeNumber(word) : std::nullopt;
    if (!number || *number < 1 || *number > 65535) return fail("a row is a number from 1 to 65535");
    rowNumber = static_cast<int>(*number);
    return true;
}

bool PlaceReader::field() {
    std::string word;
    std::vector<std::string_view> names;
    const bool named = next(word);
    for (const Request& r : requests()) {
        if (r.target != targetName || (r.shape == Shape::Table) != (rowNumber > 0)) continue;
        for (std::size_t i = 0; i < r.fields.size(); ++i) {
            if (named && r.fields[i].name == word) {
                request = &r;
                fieldIndex = i;
                return true;
            }
            names.push_back(r.fields[i].name);
        }
    }
    const std::string kind = fmt::format("{}{}", targetName, rowNumber > 0 ? " row" : "");
    if (names.empty())
        return fail(fmt::format("{} has no fields; its rows have: {} ... row N FIELD", kind, targetName));
    return fail(fmt::format("{} \"{}\" of {}: one of {}", named ? "no field" : "a field is missing,", word,
                            kind, fmt::join(names, ", ")));
}

std::vector<std::uint8_t> currentBytes(const State& state, const Place& place) {
    const Request& r = request(place.request);
    std::vector<std::uint8_t> reply(r.size);
    Peer peer;
    if (place.row > 0)
        peer = Rows(state, place.request, place.adapter, place.unit).row(asIndex(place.row - 1));
    packFields(r, {state, place.adapter, place.unit, &peer}, place.row, reply);
    const Field& field = r.fields[place.field];
    const auto from = reply.begin() + field.offset;
    return {from, from + field.width};
}

}  // namespace sim
