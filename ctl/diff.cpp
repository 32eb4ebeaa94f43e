// diff [FROM [TO]]: what differs between the files, the driver, what was last sent, a past state, a document.
#include "change/takeback.h"
#include "ctl/command.h"
#include "ctl/differences.h"
#include "ctl/document.h"
#include "ctl/past.h"
#include "ctl/settings.h"
#include "ctl/side.h"
#include "platform/safetext.h"

#include <algorithm>
#include <fmt/format.h>
#include <memory>
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

// The records before a change.
AtmDevices devicesBefore(const std::string& number) {
    requireRoot();
    const std::vector<PastChange> changes = allChanges();
    AtmDevices devices;
    if (!recordsWith(filesBeforeChange(findChange(number, changes), changes), devices))
        throw Failure(Status::wrongValue, fmt::format("{} as it was cannot be read", PdfEdit::parameterFile));
    return devices;
}

class Comparison {
  public:
    void compare(const Side& from, const Side& to, Output& output) {
        for (int adapter = 0; adapter < adapterCount; ++adapter)
            for (const ServiceId& service : servicesOf(adapter)) {
                const auto left = from.services.find(service.name().path),
                           right = to.services.find(service.name().path);
                if (left != from.services.end() && right != to.services.end())
                    compare(service, left->second, right->second);
            }
        output.tree.put("differences", std::move(found_));
        output.status = different_ ? Status::different : Status::good;
    }

  private:
    void add(const Difference& difference, Mark mark) {
        Tree tree = differenceTree(difference, "from", "to");
        tree.put("mark", {marks[static_cast<std::size_t>(mark)], {}});
        found_.add(std::move(tree));
        different_ |= counts(mark);
    }

    void compare(const ServiceId& service, const SideService& from, const SideService& to) {
        const std::string& path = service.name().path;
        if (!from.running || !to.running) {
            const SideService& told = from.running ? from : to;
            const auto enabled = told.values.find("enabled");
            if (enabled == told.values.end() || enabled->second.text == "false") return;
            Tree tree;
            tree.put("where", {path, {". " + path}});
            tree.put("mark", {".", {}});
            found_.add(std::move(tree));
            different_ = true;
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

    Tree found_ = Tree::array();
    bool different_ = false;
};

Side readSide(const std::string& name, Session& session) {
    const std::vector<int> all{0, 1, 2, 3};
    if (name == "file") return sideOf(session.devices, session.adapters(), session);
    if (name == "driver") return driverSide(session, session.devices);
    if (name == "sent") return sentSide(session);
    if (name.starts_with('@')) return sideOf(devicesBefore(name.substr(1)), all, session);
    const Json document = readDocument(readDocumentFile(name));
    AtmDevices devices = session.devices;
    applyDocument(document, devices);
    return sideOf(document, devices);
}

Output diff(Session& session, const std::string& from, const std::string& to) {
    session.read();
    std::optional<Side> left, right;
    FirstFailure first;
    first.of([&] { left = readSide(from, session); });
    first.of([&] { right = readSide(to, session); });
    for (const auto* side : {&left, &right})
        if (*side && (*side)->complaint) first.of([&] { throw Failure(*(*side)->complaint); });
    if (!left || !right) first.raise();
    Output output;
    output.tree.put("from", {platform::escaped(from), {}});
    output.tree.put("to", {platform::escaped(to), {}});
    Comparison().compare(*left, *right, output);
    if (const auto& failure = first.failure()) {
        output.status = failure->status();
        output.message = failure->what();
        output.where = failure->where();
    }
    return output;
}

}  // namespace

Run addDiff(CLI::App& command) {
    struct Sides {
        std::string from = "file", to = "driver";
    };
    const auto sides = std::make_shared<Sides>();
    command.add_option("FROM", sides->from,
                       "file (usual), driver, sent, @N (before change N), or a document");
    command.add_option("TO", sides->to, "the same; usually driver");
    return [sides](Session& session) { return diff(session, sides->from, sides->to); };
}
