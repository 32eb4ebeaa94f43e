#include "model/recordrules.h"

#include "model/ipnetwork.h"
#include "model/tvtypes.h"

#include <bit>
#include <fmt/format.h>
#include <optional>
#include <span>
#include <utility>

namespace {

constexpr Severity error = Severity::error, warning = Severity::warning;

// A rule about a record or an entry of a list. What it says is empty where it holds.
template <class Subject> struct Rule {
    int number;
    Severity severity;
    const char* key;  // of the record, or the part of the entry
    std::string (*complaint)(const Subject& subject);
};

constexpr std::size_t longestName = 30;  // that is read back as it was written

// What is wrong with a text that has to be an IP address; empty: nothing.
std::string addressComplaint(std::string_view text) {
    if (AddressNumber(text)) return {};
    return text.empty() ? "An address is missing" : fmt::format("{} is no address", text);
}

// From 224.0.0.0 on there are groups, and then addresses that nobody has.
std::string groupComplaint(std::optional<std::uint32_t> ip, std::string_view text) {
    constexpr std::uint32_t firstGroup = 224U << 24, firstReserved = 240U << 24;
    if (!ip || *ip < firstGroup) return {};
    if (*ip < firstReserved) return fmt::format("{} is the address of a group", text);
    return fmt::format("{} is a reserved address", text);
}

// The first digit aside, which a prefix cannot have as 0.
bool isZero(std::string_view digits) {
    return digits.substr(1).find_first_not_of('0') == digits.npos;
}

std::string prefixComplaint(const atmAddress& address) {
    const std::string_view start = address.digits().substr(0, 2);
    if (isZero(address.digits()) || start == "39" || start == "45" || start == "47") return {};
    return fmt::format("A network prefix begins with 39, 45 or 47, not with {}", start);
}

std::string nameComplaint(const ElanName& name) {
    if (name.view().size() <= longestName) return {};
    return fmt::format("Of an ELAN name of {} characters the last one is lost when the file is read",
                       name.view().size());
}

bool asksServer(const AtmIP1577& client) {
    return client.pvcOnly == 0;
}
bool hasForeignServer(const AtmIP1577& client) {
    return asksServer(client) && client.serverIp != client.ip;
}

std::string when(bool broken, const char* sentence) {
    return broken ? sentence : "";
}

constexpr Rule<AtmLEC> lecRules[] = {
    {1, error, "l3Mtu", [](auto& c) { return when(c.l3Mtu == 0, "L3 MTU 0: no packet fits into it"); }},
    {201, warning, "l3Mtu",
     [](auto& c) {
         const int size = MtuSize(c.mtuClass);
         if (!UsesServers(c) || size == 0 || c.l3Mtu <= size) return std::string();
         return fmt::format("L3 MTU {} is above the ELAN MTU {}", c.l3Mtu, size);
     }},
    {2, warning, "elanName",
     [](auto& c) {
         return when(UsesServers(c) && c.elanName.empty(), "This is an enabled client without an ELAN name");
     }},
    {112, warning, "elanName", [](auto& c) { return nameComplaint(c.elanName); }},
    {107, warning, "networkPrefix",
     [](auto& c) { return UsesServers(c) ? prefixComplaint(c.address) : std::string(); }},
    {108, error, "networkPrefix",
     [](auto& c) {
         return when(UsesServers(c) && !c.useLecs && isZero(c.address.digits()),
                     "The LECS is bypassed, and the address of the LES is zero");
     }},
    {115, warning, "networkPrefix",
     [](auto& c) {
         return when(UsesServers(c) && c.useLecs && isZero(c.address.digits()),
                     "The LECS is used, and its address is zero");
     }},
};

constexpr Rule<AtmLES> lesRules[] = {
    {202, warning, "elanName",
     [](auto& s) { return when(s.elanName.empty(), "This is an enabled server without an ELAN name"); }},
    {112, warning, "elanName", [](auto& s) { return nameComplaint(s.elanName); }},
    {113, error, "clients",
     [](auto& s) {
         return when(!s.clients.empty() && s.clientFile.empty(),
                     "The clients are not kept: there is no client table file");
     }},
};

constexpr Rule<AtmLECS> lecsRules[] = {
    {107, warning, "networkPrefix", [](auto& s) { return prefixComplaint(s.address); }},
};

constexpr Rule<AtmSig> sigRules[] = {
    {107, warning, "networkPrefix",
     [](auto& s) { return s.addressRegistration ? std::string() : prefixComplaint(s.address); }},
};

constexpr Rule<AtmIP1577> ipRules[] = {
    {4, error, "address",
     [](auto& c) {
         return c.ip.empty() || c.ip.view() == "0.0.0.0" ? "This is an enabled client without an IP address"
                                                         : addressComplaint(c.ip.view());
     }},
    {104, error, "address",
     [](auto& c) {
         const auto network = IpNetwork::of(c);
         if (!network || std::countr_zero(network->mask) < 2) return std::string();
         const std::uint32_t host = network->own & ~network->mask;
         if (host == 0) return fmt::format("{} is the address of the network", c.ip.view());
         return host == ~network->mask ? fmt::format("{} is the network's broadcast address", c.ip.view())
                                       : std::string();
     }},
    {204, error, "address", [](auto& c) { return groupComplaint(AddressNumber(c.ip.view()), c.ip.view()); }},
    {4, error, "subnetMask", [](auto& c) { return addressComplaint(c.subnetMask.view()); }},
    {103, error, "subnetMask",
     [](auto& c) {
         const auto mask = AddressNumber(c.subnetMask.view());
         if (!mask || IsSubnetMask(*mask)) return std::string();
         return fmt::format("{} is no subnet mask: it has holes", c.subnetMask.view());
     }},
    {206, warning, "subnetMask",
     [](auto& c) {
         return when(AddressNumber(c.subnetMask.view()) == 0U,
                     "The mask 0.0.0.0 puts every address into the client's network");
     }},
    {4, error, "serverAddress",
     [](auto& c) {
         if (!asksServer(c)) return std::string();
         return c.serverIp.empty() ? "This client has no address of its ATMARP server"
                                   : addressComplaint(c.serverIp.view());
     }},
    {204, error, "serverAddress",
     [](auto& c) {
         return asksServer(c) ? groupComplaint(AddressNumber(c.serverIp.view()), c.serverIp.view())
                              : std::string();
     }},
    {105, warning, "serverAddress",
     [](auto& c) {
         const auto network = IpNetwork::of(c);
         const auto server = AddressNumber(c.serverIp.view());
         if (!asksServer(c) || !network || !server || network->has(*server)) return std::string();
         return fmt::format("The ATMARP server {} is not in the client's network", c.serverIp.view());
     }},
    {107, warning, "networkPrefix",
     [](auto& c) { return hasForeignServer(c) ? prefixComplaint(c.address) : std::string(); }},
};

constexpr unsigned signallingVci = 5, ilmiVci = 16, lastReservedVci = 31;

template <class Pvc> std::string ownedVci(const Pvc& pvc) {
    if (pvc.vci == signallingVci) return fmt::format("VCI {} belongs to signalling", pvc.vci);
    return pvc.vci == ilmiVci ? fmt::format("VCI {} belongs to ILMI", pvc.vci) : "";
}
template <class Pvc> std::string reservedVci(const Pvc& pvc) {
    if (pvc.vci > lastReservedVci || !ownedVci(pvc).empty()) return {};
    return fmt::format("VCI {} is reserved, as all up to {} are", pvc.vci, lastReservedVci);
}

constexpr Rule<AtmBridgedPvc> bridgedRules[] = {
    {3, error, "vci", ownedVci<AtmBridgedPvc>},
    {102, error, "vci", reservedVci<AtmBridgedPvc>},
    {106, warning, "mac",
     [](auto& pvc) {
         if (!(pvc.mac.bytes()[0] & 1)) return std::string();
         return fmt::format("{} is the address of a group", pvc.mac.GetFMacAddress());
     }},
    {203, warning, "mac",
     [](auto& pvc) { return when(pvc.mac == macAddress(), "The PVC leads to a MAC address of zeros"); }},
};

constexpr Rule<AtmRoutedPvc> routedRules[] = {
    {3, error, "vci", ownedVci<AtmRoutedPvc>},
    {102, error, "vci", reservedVci<AtmRoutedPvc>},
    {203, warning, "ip",
     [](auto& pvc) { return when(pvc.ip == ipAddress(), "The PVC leads to the IP address 0.0.0.0"); }},
    {204, error, "ip",
     [](auto& pvc) { return groupComplaint(AddressNumber(pvc.ip), pvc.ip.GetFIPAddress()); }},
};

template <class Subject>
std::vector<Finding> broken(std::span<const Rule<Subject>> rules, const Subject& subject) {
    std::vector<Finding> found;
    for (const Rule<Subject>& rule : rules)
        if (std::string complaint = rule.complaint(subject); !complaint.empty())
            found.push_back({rule.number, rule.severity, "", std::move(complaint), rule.key});
    return found;
}

}  // namespace

std::vector<Finding> CheckRecord(const AtmLEC& client) {
    return broken<AtmLEC>(lecRules, client);
}
std::vector<Finding> CheckRecord(const AtmLES& server) {
    return broken<AtmLES>(lesRules, server);
}
std::vector<Finding> CheckRecord(const AtmLECS& server) {
    return broken<AtmLECS>(lecsRules, server);
}
std::vector<Finding> CheckRecord(const AtmIP1577& client) {
    return broken<AtmIP1577>(ipRules, client);
}
std::vector<Finding> CheckRecord(const AtmSig& signalling) {
    return broken<AtmSig>(sigRules, signalling);
}

std::vector<Finding> CheckEntry(const AtmBridgedPvc& pvc) {
    return broken<AtmBridgedPvc>(bridgedRules, pvc);
}

std::vector<Finding> CheckEntry(const AtmRoutedPvc& pvc) {
    return broken<AtmRoutedPvc>(routedRules, pvc);
}

std::vector<Finding> CheckEntry(AtmRoutedPvc pvc, const std::string& address) {
    pvc.ip = address;
    std::vector<Finding> all = CheckEntry(pvc);
    if (std::string complaint = addressComplaint(address); !complaint.empty())
        all.push_back({.number = 4, .message = std::move(complaint), .part = "ip"});
    return all;
}

Finding VciTwice(unsigned vci, std::string_view owner) {
    return {101, error, "", fmt::format("VCI {} is used by {} already", vci, owner), "vci"};
}
