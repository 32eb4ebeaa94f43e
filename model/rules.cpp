#include "model/rules.h"

#include "model/addresstext.h"

#include <algorithm>
#include <bit>
#include <cctype>
#include <fmt/format.h>
#include <map>
#include <optional>
#include <set>
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

constexpr int mtuSizes[] = {1516, 4544, 9234, 18190};  // of the classes from 1
constexpr std::size_t longestName = 30;                // that is read back as it was written

int mtuOf(std::int32_t mtuClass) {
    const bool known = mtuClass >= 1 && mtuClass <= static_cast<std::int32_t>(std::size(mtuSizes));
    return known ? mtuSizes[mtuClass - 1] : 0;
}

// IPv4 addresses in the order of their bits.
std::optional<std::uint32_t> number(std::string_view text) {
    const AddressReading ip = ReadAddress(AddressKind::ip, text);
    if (!ip.reason.empty()) return {};
    std::uint32_t bits = 0;
    for (const std::uint8_t byte : ip.bytes) bits = bits << 8 | byte;
    return bits;
}
std::uint32_t number(const ipAddress& ip) {
    std::uint32_t bits = 0;
    for (const std::uint8_t byte : ip.bytes()) bits = bits << 8 | byte;
    return bits;
}

bool contiguous(std::uint32_t mask) {
    return std::countl_one(mask) + std::countr_zero(mask) >= 32;
}

// The network of the client, if its address and its mask are ones.
struct Network {
    std::uint32_t own, mask;

    bool has(std::uint32_t address) const { return (address & mask) == (own & mask); }
    static std::optional<Network> of(const AtmIP1577& client) {
        const auto own = number(client.ip.view()), mask = number(client.subnetMask.view());
        if (!own || !mask || !contiguous(*mask)) return {};
        return Network{*own, *mask};
    }
};

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

bool usesServers(const AtmLEC& client) {
    return client.pvcOnly == 0;
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
         const int size = mtuOf(c.mtuClass);
         if (!usesServers(c) || size == 0 || c.l3Mtu <= size) return std::string();
         return fmt::format("L3 MTU {} is above the ELAN MTU {}", c.l3Mtu, size);
     }},
    {2, warning, "elanName",
     [](auto& c) {
         return when(usesServers(c) && c.elanName.empty(), "This is an enabled client without an ELAN name");
     }},
    {112, warning, "elanName", [](auto& c) { return nameComplaint(c.elanName); }},
    {107, warning, "networkPrefix",
     [](auto& c) { return usesServers(c) ? prefixComplaint(c.address) : std::string(); }},
    {108, error, "networkPrefix",
     [](auto& c) {
         return when(usesServers(c) && !c.useLecs && isZero(c.address.digits()),
                     "The LECS is bypassed, and the address of the LES is zero");
     }},
    {115, warning, "networkPrefix",
     [](auto& c) {
         return when(usesServers(c) && c.useLecs && isZero(c.address.digits()),
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
         return c.ip.empty() ? "This is an enabled client without an IP address"
                             : AddressComplaint(c.ip.view());
     }},
    {104, error, "address",
     [](auto& c) {
         const auto network = Network::of(c);
         if (!network || std::countr_zero(network->mask) < 2) return std::string();
         const std::uint32_t host = network->own & ~network->mask;
         if (host == 0) return fmt::format("{} is the address of the network", c.ip.view());
         return host == ~network->mask ? fmt::format("{} is the network's broadcast address", c.ip.view())
                                       : std::string();
     }},
    {4, error, "subnetMask", [](auto& c) { return AddressComplaint(c.subnetMask.view()); }},
    {103, error, "subnetMask",
     [](auto& c) {
         const auto mask = number(c.subnetMask.view());
         if (!mask || contiguous(*mask)) return std::string();
         return fmt::format("{} is no subnet mask: it has holes", c.subnetMask.view());
     }},
    {4, error, "serverAddress",
     [](auto& c) {
         if (!asksServer(c)) return std::string();
         return c.serverIp.empty() ? "This client has no address of its ATMARP server"
                                   : AddressComplaint(c.serverIp.view());
     }},
    {105, warning, "serverAddress",
     [](auto& c) {
         const auto network = Network::of(c);
         const auto server = number(c.serverIp.view());
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
};

template <class Subject>
std::vector<Finding> broken(std::span<const Rule<Subject>> rules, const Subject& subject) {
    std::vector<Finding> found;
    for (const Rule<Subject>& rule : rules)
        if (std::string complaint = rule.complaint(subject); !complaint.empty())
            found.push_back({rule.number, rule.severity, "", std::move(complaint), rule.key});
    return found;
}

std::string name(const char* kind, std::size_t index) {
    return fmt::format("{}{}", kind, index + 1);
}

std::string entry(const std::string& service, const char* list, std::size_t index) {
    return fmt::format("{}.{}[{}]", service, list, index);
}

// Walks an adapter's enabled services.
class Check {
  public:
    explicit Check(const AdapterRecords& records) : records_(records) {}

    std::vector<Finding> run() {
        record<AtmSig>("signalling", records_.sig, sigRules);
        for (std::size_t m = 0; m < records_.lec.size(); ++m) {
            const AtmLEC& client = records_.lec[m];
            if (!client.enabled) continue;
            record<AtmLEC>(name("lec", m), client, lecRules);
            entries(name("lec", m), client.pvcs);
        }
        for (std::size_t m = 0; m < records_.les.size(); ++m)
            if (records_.les[m].enabled) record<AtmLES>(name("les", m), records_.les[m], lesRules);
        if (records_.lecs.enabled) record<AtmLECS>("lecs", records_.lecs, lecsRules);
        if (records_.ip.enabled) {
            record<AtmIP1577>("ip", records_.ip, ipRules);
            entries("ip", records_.ip.pvcs);
            peers();
        }
        vcis();
        servers();
        clients();
        files();
        return std::move(found_);
    }

  private:
    void add(int rule, Severity severity, std::string path, std::string message, const char* part = "") {
        found_.push_back({rule, severity, std::move(path), std::move(message), part});
    }

    template <class Record>
    void record(const std::string& service, const Record& record, std::span<const Rule<Record>> rules) {
        for (Finding& finding : broken(rules, record)) {
            finding.path = service + "." + std::exchange(finding.part, {});
            found_.push_back(std::move(finding));
        }
    }

    template <class Pvc> void entries(const std::string& service, const std::vector<Pvc>& pvcs) {
        for (std::size_t i = 0; i < pvcs.size(); ++i)
            for (Finding& finding : CheckEntry(pvcs[i])) {
                finding.path = entry(service, "pvcs", i);
                found_.push_back(std::move(finding));
            }
    }

    void peers() {
        const auto network = Network::of(records_.ip);
        if (!network) return;
        for (std::size_t i = 0; i < records_.ip.pvcs.size(); ++i) {
            const ipAddress& peer = records_.ip.pvcs[i].ip;
            if (peer == ipAddress() || network->has(number(peer))) continue;
            add(105, warning, entry("ip", "pvcs", i),
                fmt::format("{} is not in the client's network", peer.GetFIPAddress()), "ip");
        }
    }

    void vcis() {
        std::map<unsigned, std::string> owners;
        const auto look = [&](const std::string& service, const std::string& words, const auto& pvcs) {
            for (std::size_t i = 0; i < pvcs.size(); ++i) {
                const auto [first, isNew] = owners.try_emplace(pvcs[i].vci, words);
                if (isNew) continue;
                found_.push_back(VciTwice(pvcs[i].vci, first->second));
                found_.back().path = entry(service, "pvcs", i);
            }
        };
        for (std::size_t m = 0; m < records_.lec.size(); ++m)
            if (records_.lec[m].enabled) look(name("lec", m), name("LEC ", m), records_.lec[m].pvcs);
        if (records_.ip.enabled) look("ip", "Classical IP", records_.ip.pvcs);
    }

    // Servers of one ELAN, and clients that its strict server turns away.
    void servers() {
        std::map<std::string, std::size_t> first;
        for (std::size_t m = 0; m < records_.les.size(); ++m) {
            const AtmLES& server = records_.les[m];
            if (!server.enabled || server.elanName.empty()) continue;
            const auto [same, isNew] = first.try_emplace(server.elanName.str(), m);
            if (!isNew)
                add(109, error, name("les", m) + ".elanName",
                    fmt::format("{} serves the ELAN {}, too", name("LES ", same->second),
                                server.elanName.view()));
            if (!server.strictMtu) continue;
            for (std::size_t n = 0; n < records_.lec.size(); ++n) {
                const AtmLEC& client = records_.lec[n];
                if (client.enabled && usesServers(client) && client.elanName == server.elanName &&
                    client.mtuClass != server.mtuClass)
                    add(110, error, name("lec", n) + ".mtu",
                        fmt::format("{} is strict about the MTU, and has another one", name("LES ", m)));
            }
        }
    }

    void clients() {
        std::map<esiSelector::Bytes, std::size_t> first;
        for (std::size_t m = 0; m < records_.les.size(); ++m) {
            if (!records_.les[m].enabled) continue;
            const auto& all = records_.les[m].clients;
            for (std::size_t i = 0; i < all.size(); ++i) {
                const auto [same, isNew] = first.try_emplace(all[i].bytes(), m);
                if (isNew || same->second == m) continue;
                add(111, error, entry(name("les", m), "clients", i),
                    fmt::format("{} is a client of {}, too", all[i].GetF2EsiSelector(),
                                name("LES ", same->second)));
            }
        }
    }

    void files() {
        std::map<std::string, std::string> first;
        const auto look = [&](const std::string& path, const std::string& words, const FileName& file) {
            if (file.empty()) return;
            const auto [same, isNew] = first.try_emplace(file.str(), words);
            if (!isNew)
                add(114, error, path,
                    fmt::format("{} is the list file of {}, too", file.view(), same->second));
        };
        for (std::size_t m = 0; m < records_.lec.size(); ++m)
            if (records_.lec[m].enabled)
                look(name("lec", m) + ".pvcFile", name("LEC ", m), records_.lec[m].pvcFile);
        for (std::size_t m = 0; m < records_.les.size(); ++m)
            if (records_.les[m].enabled)
                look(name("les", m) + ".clientFile", name("LES ", m), records_.les[m].clientFile);
        if (records_.ip.enabled) look("ip.pvcFile", "Classical IP", records_.ip.pvcFile);
    }

    const AdapterRecords& records_;
    std::vector<Finding> found_;
};

}  // namespace

AdapterRecords::AdapterRecords(const AtmDevices& devices, int adapter) {
    const auto a = static_cast<std::size_t>(adapter);
    lec = devices.lec[a];
    les = devices.les[a];
    lecs = devices.lecs[a];
    ip = devices.ip1577[a];
    sig = devices.sig[a];
}

std::vector<Finding> CheckAdapter(const AdapterRecords& records) {
    return Check(records).run();
}

std::vector<Finding> CheckEntry(const AtmBridgedPvc& pvc) {
    return broken<AtmBridgedPvc>(bridgedRules, pvc);
}

std::vector<Finding> CheckEntry(const AtmRoutedPvc& pvc) {
    return broken<AtmRoutedPvc>(routedRules, pvc);
}

Finding VciTwice(unsigned vci, std::string_view owner) {
    return {101, error, "", fmt::format("VCI {} is used by {} already", vci, owner), "vci"};
}

std::string AddressComplaint(std::string_view text) {
    if (number(text)) return {};
    return text.empty() ? "An address is missing" : fmt::format("{} is no address", text);
}
