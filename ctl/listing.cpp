#include "ctl/listing.h"

#include "ctl/entries.h"
#include "ctl/settings.h"

#include <fmt/format.h>
#include <map>

std::string adapterName(int adapter) {
    return fmt::format("adapter{}", adapter + 1);
}

std::string shortName(const ServiceId& service) {
    const std::string& path = service.name().path;
    return path.substr(path.find('/') + 1);
}

Tree serviceTree(const ServiceId& service, const AtmDevices& devices, bool macKnown, bool listKnown) {
    Tree tree;
    const std::string path = service.name().path + '.';
    for (const Setting& setting : settingsOf(service, devices, macKnown))
        tree.put(setting.key, {setting.json, {settingLine(path + setting.key, setting.text)}});
    withRecord(service, [&](auto record) {
        const auto& from = record(devices);
        using Record = std::remove_cvref_t<decltype(from)>;
        if constexpr (hasList<Record>) {
            if (!listKnown) return;
            Tree entries = Tree::array();
            for (std::size_t i = 0; const auto& entry : *listOf(from))
                entries.add(
                    {entryJson(entry),
                     {settingLine(fmt::format("{}{}[{}]", path, listName<Record>, i++), entryWords(entry))}});
            tree.put(listName<Record>, std::move(entries));
        }
    });
    return tree;
}

Tree configurationTree(std::span<const ServiceId> services, const AtmDevices& devices,
                       const std::function<bool(int adapter)>& macKnown,
                       const std::function<bool(const ServiceId& service)>& listKnown) {
    std::map<int, Tree> adapters;
    for (const ServiceId& service : services)
        if (!adapters[service.adapter].json().contains(shortName(service)))
            adapters[service.adapter].put(
                shortName(service),
                serviceTree(service, devices, macKnown(service.adapter), !listKnown || listKnown(service)));
    Tree tree;
    for (auto& [adapter, of] : adapters) tree.put(adapterName(adapter), std::move(of));
    return tree;
}

std::string leftOutMessage(const std::string& file) {
    return file + " cannot be read: the list is left out";
}
