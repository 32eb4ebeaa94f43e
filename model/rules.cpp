#include "model/rules.h"

#include "model/ipnetwork.h"
#include "model/recordrules.h"
#include "model/statecodes.h"

#include <algorithm>
#include <fmt/format.h>
#include <map>
#include <utility>

namespace {

constexpr Severity error = Severity::error, warning = Severity::warning;

std::string name(const char* kind, std::size_t index) {
    return fmt::format("{}{}", kind, index + 1);
}

std::string entry(const std::string& service, const char* list, std::size_t index) {
    return fmt::format("{}.{}[{}]", service, list, index);
}

constexpr unsigned long megabyte = 1'000'000;

// Bytes in a second that cells carry on a link; 0: not known.
unsigned long linkRate(std::uint32_t kind) {
    // 25.6 and 149.76 Mbit/s, which is what SONET's 155.52 leave, in cells of 53 bytes.
    constexpr unsigned long slowCells = 60'377, fastCells = 353'208, payload = 48;
    if (kind < link25 || kind > link155Utp) return 0;
    return (kind == link25 ? slowCells : fastCells) * payload;
}

// Walks an adapter's enabled services. With `only`, what is about that one, and of each
// rule one finding about entries of lists.
class Check {
  public:
    explicit Check(const AdapterRecords& records, std::string_view only = {})
        : records_(records), only_(only) {}

    std::vector<Finding> run() {
        record("signalling", records_.sig);
        for (std::size_t m = 0; m < records_.lec.size(); ++m) {
            const AtmLEC& client = records_.lec[m];
            if (!client.enabled) continue;
            record(name("lec", m), client);
            entries(name("lec", m), client.pvcs);
        }
        for (std::size_t m = 0; m < records_.les.size(); ++m)
            if (records_.les[m].enabled) record(name("les", m), records_.les[m]);
        if (records_.lecs.enabled) record("lecs", records_.lecs);
        if (records_.ip.enabled) {
            record("ip", records_.ip);
            entries("ip", records_.ip.pvcs);
            peers();
        }
        rates();
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

    bool wants(std::string_view service) const { return only_.empty() || only_ == service; }
    // Thousands of entries can have the same fault: then its sentence is made once.
    bool wants(int rule, std::string_view service) const {
        return wants(service) && (only_.empty() || std::ranges::count(found_, rule, &Finding::number) == 0);
    }

    template <class Record> void record(const std::string& service, const Record& record) {
        if (!wants(service)) return;
        for (Finding& finding : CheckRecord(record)) {
            finding.path = service + "." + std::exchange(finding.part, {});
            found_.push_back(std::move(finding));
        }
    }

    template <class Pvc> void entries(const std::string& service, const std::vector<Pvc>& pvcs) {
        if (!wants(service)) return;
        for (std::size_t i = 0; i < pvcs.size(); ++i)
            for (Finding& finding : CheckEntry(pvcs[i])) {
                if (!wants(finding.number, service)) continue;
                finding.path = entry(service, "pvcs", i);
                found_.push_back(std::move(finding));
            }
    }

    void peers() {
        const auto network = IpNetwork::of(records_.ip);
        if (!network) return;
        for (std::size_t i = 0; i < records_.ip.pvcs.size(); ++i) {
            const ipAddress& peer = records_.ip.pvcs[i].ip;
            if (peer == ipAddress() || network->has(AddressNumber(peer)) || !wants(105, "ip")) continue;
            add(105, warning, entry("ip", "pvcs", i),
                fmt::format("{} is not in the client's network", peer.GetFIPAddress()), "ip");
        }
    }

    void rates() {
        const unsigned long most = linkRate(records_.linkKind);
        if (most == 0) return;
        const auto look = [&](const std::string& service, const auto& pvcs) {
            for (std::size_t i = 0; i < pvcs.size(); ++i)
                if (pvcs[i].rate > 0 && static_cast<unsigned long>(pvcs[i].rate) * megabyte > most &&
                    wants(205, service))
                    add(205, warning, entry(service, "pvcs", i),
                        fmt::format("{} MB/s are more than the link has: {:.2f}", pvcs[i].rate,
                                    static_cast<double>(most) / megabyte),
                        "rate");
        };
        for (std::size_t m = 0; m < records_.lec.size(); ++m)
            if (records_.lec[m].enabled) look(name("lec", m), records_.lec[m].pvcs);
        if (records_.ip.enabled) look("ip", records_.ip.pvcs);
    }

    void vcis() {
        std::vector<std::uint8_t> owners(std::size_t{1} << 16U);  // by VCI: the client's number, 0: none
        std::uint8_t number = 0;
        const auto words = [](unsigned owner) {
            return owner > lecCount ? "Classical IP" : name("LEC ", owner - 1);
        };
        const auto look = [&](const std::string& service, const auto& pvcs) {
            for (std::size_t i = 0; i < pvcs.size(); ++i) {
                std::uint8_t& owner = owners[pvcs[i].vci];
                if (owner == 0) {
                    owner = number;
                } else if (wants(101, service)) {
                    found_.push_back(VciTwice(pvcs[i].vci, words(owner)));
                    found_.back().path = entry(service, "pvcs", i);
                }
            }
        };
        for (const AtmLEC& client : records_.lec) {
            ++number;
            if (client.enabled) look(name("lec", number - 1U), client.pvcs);
        }
        ++number;
        if (records_.ip.enabled) look("ip", records_.ip.pvcs);
    }

    // Servers of one ELAN, and clients that its strict server turns away.
    void servers() {
        std::map<std::string, std::size_t> first;
        for (std::size_t m = 0; m < records_.les.size(); ++m) {
            const AtmLES& server = records_.les[m];
            if (!server.enabled || server.elanName.empty()) continue;
            const auto [same, isNew] = first.try_emplace(server.elanName.str(), m);
            if (!isNew && wants(109, name("les", m)))
                add(109, error, name("les", m) + ".elanName",
                    fmt::format("{} serves the ELAN {}, too", name("LES ", same->second),
                                server.elanName.view()));
            if (!server.strictMtu) continue;
            for (std::size_t n = 0; n < records_.lec.size(); ++n) {
                const AtmLEC& client = records_.lec[n];
                if (client.enabled && UsesServers(client) && client.elanName == server.elanName &&
                    client.mtuClass != server.mtuClass && wants(110, name("lec", n)))
                    add(110, error, name("lec", n) + ".mtu",
                        fmt::format("{} is strict about the MTU, and has another one", name("LES ", m)));
            }
        }
    }

    void clients() {
        if (!only_.empty() && !only_.starts_with("les")) return;
        std::map<esiSelector::Bytes, std::size_t> first;
        for (std::size_t m = 0; m < records_.les.size(); ++m) {
            if (!records_.les[m].enabled) continue;
            const auto& all = records_.les[m].clients;
            for (std::size_t i = 0; i < all.size(); ++i) {
                const auto [same, isNew] = first.try_emplace(all[i].bytes(), m);
                if (isNew || same->second == m || !wants(111, name("les", m))) continue;
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
            if (!isNew && wants(path.substr(0, path.find('.'))))
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
    std::string_view only_;
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

std::vector<Finding> CheckService(const AdapterRecords& records, std::string_view service) {
    return Check(records, service).run();
}
