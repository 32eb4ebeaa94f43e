#include "ui/config/vciowners.h"

#include <fmt/format.h>

namespace {

VciOwners collect(const void* edited, const void* replaced) {
    VciOwners owners;
    const auto add = [&](const auto& client, const std::string& name) {
        if (!client.enabled && &client.pvcs != edited) return;
        for (const auto& pvc : client.pvcs)
            if (&pvc != replaced) owners.try_emplace(pvc.vci, name);
    };
    for (std::size_t m = 0; m < xferBuffer.size(); ++m) add(xferBuffer[m], fmt::format("LEC {}", m + 1));
    add(ip1577XferBuffer, "Classical IP");
    return owners;
}

}  // namespace

VciOwners vciOwners(const std::vector<AtmBridgedPvc>& edited, const AtmBridgedPvc* replaced) {
    return collect(&edited, replaced);
}

VciOwners vciOwners(const std::vector<AtmRoutedPvc>& edited, const AtmRoutedPvc* replaced) {
    return collect(&edited, replaced);
}

void checkOwner(std::vector<Finding>& findings, const VciOwners& owners, unsigned vci) {
    const auto owner = owners.find(vci);
    if (owner != owners.end()) findings.push_back(VciTwice(vci, owner->second));
}
