#include "ctl/comparison.h"

#include "ctl/differences.h"
#include "ctl/settings.h"

#include <algorithm>
#include <fmt/format.h>
#include <strings.h>

namespace {

constexpr const char* marks[] = {"", "s", "?", "i"};

bool counts(Mark mark) {
    return mark == Mark::none || mark == Mark::sent;
}

// Addresses are what their digits say, of whatever case.
bool sameValue(const std::string& key, const std::string& a, const std::string& b) {
    if (key != "networkPrefix" && key != "esiSelector") return a == b;
    return ::strcasecmp(a.c_str(), b.c_str()) == 0;
}

class Comparison {
  public:
    Compared compare(const Side& from, const Side& to) {
        for (int adapter = 0; adapter < adapterCount; ++adapter)
            for (const ServiceId& service : servicesOf(adapter)) {
                const auto left = from.services.find(service.name().path),
                           right = to.services.find(service.name().path);
                if (left != from.services.end() && right != to.services.end())
                    compare(service, left->second, right->second);
            }
        return std::move(compared_);
    }

  private:
    void add(const Difference& difference, Mark mark) {
        Tree tree = differenceTree(difference, "from", "to");
        tree.put("mark", {marks[static_cast<std::size_t>(mark)], {}});
        compared_.tree.add(std::move(tree));
        if (counts(mark)) ++*count_;
    }

    void compare(const ServiceId& service, const SideService& from, const SideService& to) {
        const std::string& path = service.name().path;
        count_ = &compared_.counted[path];
        if (!from.running || !to.running) {
            const SideService& told = from.running ? from : to;
            const auto enabled = told.values.find("enabled");
            if (enabled == told.values.end() || enabled->second.text == "false") return;
            Tree tree;
            tree.put("where", {path, {". " + path}});
            tree.put("mark", {".", {}});
            compared_.tree.add(std::move(tree));
            ++*count_;
            return;
        }
        for (const Setting& setting : settingsOf(service, AtmDevices(), false)) {
            const auto left = from.values.find(setting.key), right = to.values.find(setting.key);
            if (left != from.values.end() && right != to.values.end() &&
                !sameValue(setting.key, left->second.text, right->second.text))
                compareValues(fmt::format("{}.{}", path, setting.key), left->second, right->second);
        }
        for (const auto& [name, left] : from.lists)
            if (const auto right = to.lists.find(name); right != to.lists.end())
                compareLists(fmt::format("{}.{}", path, name), left, right->second);
    }

    void compareValues(const std::string& where, const SideValue& from, const SideValue& to) {
        const Mark mark = from.mark == Mark::none ? to.mark : from.mark;
        add({.where = where,
             .from = from.text,
             .to = to.text,
             .fromJson = from.json,
             .toJson = to.json,
             .mark = marks[static_cast<std::size_t>(mark)]},
            mark);
    }

    static std::vector<std::size_t> alone(const SideList& list, const SideList& others, bool identities) {
        const auto text = [&](const SideEntry& entry) -> const std::string& {
            return identities ? entry.identity : entry.text;
        };
        std::map<std::string_view, std::size_t> left;
        for (const SideEntry& entry : others.entries) ++left[text(entry)];
        std::vector<std::size_t> places;
        for (std::size_t i = 0; i < list.entries.size(); ++i)
            if (std::size_t& count = left[text(list.entries[i])]; count > 0)
                --count;
            else
                places.push_back(i);
        return places;
    }

    void compareLists(const std::string& where, const SideList& from, const SideList& to) {
        const bool identities = from.identities || to.identities;
        for (const std::size_t i : alone(from, to, identities))
            add({.where = fmt::format("{}[{}]", where, i),
                 .from = from.entries[i].text,
                 .to = {},
                 .fromJson = from.entries[i].json,
                 .toJson = {},
                 .hasTo = false},
                Mark::none);
        for (const std::size_t i : alone(to, from, identities))
            add({.where = fmt::format("{}[{}]", where, i),
                 .from = {},
                 .to = to.entries[i].text,
                 .fromJson = {},
                 .toJson = to.entries[i].json,
                 .hasFrom = false},
                Mark::none);
    }

    Compared compared_;
    std::size_t* count_ = nullptr;  // of the service that is being compared
};

}  // namespace

bool Compared::different() const {
    return std::ranges::any_of(counted, [](const auto& service) { return service.second > 0; });
}

Compared compare(const Side& from, const Side& to) {
    return Comparison().compare(from, to);
}
