// get PATH.KEY: one value.
#include "ctl/command.h"
#include "ctl/entries.h"
#include "ctl/settings.h"

#include <algorithm>
#include <fmt/format.h>
#include <memory>

namespace {

// An entry, or all of a list.
Tree listValue(const KeyPath& path, const AtmDevices& devices) {
    Tree value = Tree::array();
    withRecord(path.service, [&](auto record) {
        const auto& from = record(devices);
        if constexpr (hasList<std::remove_cvref_t<decltype(from)>>) {
            const auto& list = *listOf(from);
            if (path.entry && *path.entry >= list.size())
                throw Failure(Status::notThere, fmt::format("there is no {}", path.text()), path.text());
            for (std::size_t i = 0; i < list.size(); ++i) {
                const Tree entry{entryJson(list[i]), {entryWords(list[i])}};
                if (path.entry == i) value = entry;
                if (!path.entry) value.add(entry);
            }
        }
    });
    return value;
}

Output get(Session& session, const std::string& text) {
    const KeyPath path = readKeyPath(text);
    const bool isList = path.key == listOfService(path.service);
    session.read();
    Output output;
    output.tree.put("where", {path.text(), {}});
    if (const std::string file = session.unknownListOf(path.service); isList && !file.empty())
        throw Failure(Status::wrongValue, fmt::format("{} cannot be read", file), file);
    if (isList) {
        output.tree.put("value", listValue(path, session.devices));
        return output;
    }
    const bool macKnown = path.key == "mac" && session.knowsMac(path.service.adapter);
    const auto all = settingsOf(path.service, session.devices, macKnown);
    const Setting& setting = *std::ranges::find(all, path.key, &Setting::key);
    output.tree.put("value", {setting.json, {setting.text}});
    return output;
}

}  // namespace

Run addGet(CLI::App& command) {
    const auto path = std::make_shared<std::string>();
    command.add_option("PATH.KEY", *path, "adapter1/lec2.mtu, adapter1/lec2.pvcs, adapter1/lec2.pvcs[1]")
        ->required();
    return [path](Session& session) { return get(session, *path); };
}
