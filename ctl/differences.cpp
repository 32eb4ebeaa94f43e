#include "ctl/differences.h"

#include "ctl/entries.h"
#include "ctl/settings.h"

#include <algorithm>
#include <fmt/format.h>
#include <map>

namespace {

// Which entries of a list the other one has not: their places, of equal ones the last.
template <class List> std::vector<std::size_t> alone(const List& list, const List& others) {
    std::map<std::string, std::size_t> left;
    for (const auto& entry : others) ++left[entryWords(entry)];
    std::vector<std::size_t> places;
    for (std::size_t i = 0; i < list.size(); ++i)
        if (std::size_t& count = left[entryWords(list[i])]; count > 0)
            --count;
        else
            places.push_back(i);
    return places;
}

template <class List>
void compareLists(const std::string& where, const List& from, const List& to,
                  std::vector<Difference>& found) {
    if (from == to) return;
    for (const std::size_t i : alone(from, to))
        found.push_back({.where = fmt::format("{}[{}]", where, i),
                         .from = entryWords(from[i]),
                         .to = {},
                         .fromJson = entryJson(from[i]),
                         .toJson = {},
                         .hasTo = false});
    for (const std::size_t i : alone(to, from))
        found.push_back({.where = fmt::format("{}[{}]", where, i),
                         .from = {},
                         .to = entryWords(to[i]),
                         .fromJson = {},
                         .toJson = entryJson(to[i]),
                         .hasFrom = false});
}

}  // namespace

std::vector<Difference> differences(const ServiceId& service, const AtmDevices& from, const AtmDevices& to) {
    std::vector<Difference> found;
    const std::string path = service.name().path + '.';
    const std::vector<Setting> left = settingsOf(service, from, false),
                               right = settingsOf(service, to, false);
    for (std::size_t i = 0; i < left.size(); ++i)
        if (!left[i].readOnly && left[i].text != right[i].text)
            found.push_back({path + left[i].key, left[i].text, right[i].text, left[i].json, right[i].json});
    withRecord(service, [&](auto record) {
        const auto &was = record(from), &is = record(to);
        using Record = std::remove_cvref_t<decltype(was)>;
        if constexpr (hasList<Record>)
            compareLists(path + listName<Record>, *listOf(was), *listOf(is), found);
    });
    return found;
}

Tree differenceTree(const Difference& difference, const char* from, const char* to) {
    const auto line = [&](char sign, const std::string& text) {
        return fmt::format("{}{} {}", sign, difference.mark, settingLine(difference.where, text));
    };
    Tree tree;
    tree.put("where", {difference.where, {}});
    if (difference.hasFrom) tree.put(from, {difference.fromJson, {line('-', difference.from)}});
    if (difference.hasTo) tree.put(to, {difference.toJson, {line('+', difference.to)}});
    return tree;
}
