#include "change/entrywords.h"

#include "platform/index.h"

#include <fmt/format.h>

namespace {

std::string wordOf(const PvcFlag& flag, std::int32_t code) {
    return code == 0 || code == 1 ? flag.words.at(asIndex(code)) : fmt::format("{} code {}", flag.name, code);
}

template <class Pvc> std::string pvcWords(const std::string& address, const Pvc& pvc) {
    return fmt::format("{} vci {} {} {} rate {}", address, pvc.vci,
                       wordOf(encapsulationFlag, pvc.encapsulation), wordOf(broadcastFlag, pvc.broadcast),
                       pvc.rate);
}

}  // namespace

std::string entryWords(const AtmBridgedPvc& pvc) {
    return pvcWords(pvc.mac.GetFMacAddress(), pvc);
}
std::string entryWords(const AtmRoutedPvc& pvc) {
    return pvcWords(pvc.ip.GetFIPAddress(), pvc);
}
std::string entryWords(const esiSelector& client) {
    return client.GetF2EsiSelector();
}
