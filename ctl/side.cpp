#include "ctl/side.h"

#include "change/sent.h"
#include "ctl/entries.h"
#include "ctl/listing.h"
#include "ctl/settings.h"
#include "ctl/status.h"
#include "ctl/unsent.h"
#include "driver/dai_io.h"
#include "metrics/value.h"
#include "model/statecodes.h"

#include <algorithm>
#include <fmt/format.h>

namespace {

constexpr std::size_t lecsPlace = firstLes + lesCount;

std::string identityOf(const AtmBridgedPvc& pvc) {
    return fmt::format("{} vci {}", pvc.mac.GetFMacAddress(), pvc.vci);
}
std::string identityOf(const AtmRoutedPvc& pvc) {
    return fmt::format("{} vci {}", pvc.ip.GetFIPAddress(), pvc.vci);
}
std::string identityOf(const esiSelector& client) {
    return entryWords(client);
}

void put(const ServiceId& service, const AtmDevices& devices, const std::set<std::string>& keys, Mark mark,
         SideService& side) {
    for (const Setting& setting : settingsOf(service, devices, false))
        if (!setting.readOnly && keys.contains(setting.key))
            side.values[setting.key] = {setting.text, setting.json, mark};
}

void putList(const ServiceId& service, const AtmDevices& devices, SideService& side) {
    withRecord(service, [&](auto record) {
        const auto& from = record(devices);
        using Record = std::remove_cvref_t<decltype(from)>;
        if constexpr (hasList<Record>) {
            SideList& list = side.lists[listName<Record>];
            for (const auto& entry : *listOf(from))
                list.entries.push_back({identityOf(entry), entryWords(entry), entryJson(entry)});
        }
    });
}

std::set<std::string> keysOf(const ServiceId& service, const AtmDevices& devices) {
    std::set<std::string> keys;
    for (const Setting& setting : settingsOf(service, devices, false))
        if (!setting.readOnly) keys.insert(setting.key);
    return keys;
}

DriverIdentity identityOf(Session& session, int adapter) {
    return driverIdentity(
        session.configuration.driverRevision,
        session.knowsMac(adapter) ? session.devices.lec[asIndex(adapter)][0].mac.GetFMacAddress() : "");
}

void requireDriver(Session& session) {
    session.discovery();
    if (!session.channel()) throw session.noDriver();
    if (!session.hasDriver()) throw Failure(Status::silent, "the driver did not answer");
}

// Asks the driver; a request without an answer ends all.
class Reader {
  public:
    Reader(Session& session, const AtmDevices& inFiles) : session_(session), files_(inFiles) { sent_.load(); }

    Side read() {
        const std::vector<FoundAdapter>& found = session_.discovery().adapters;
        if (found.empty() && session_.channel().outcome() != Outcome::success) {
            side_.complaint.emplace(Status::refused, "the driver refuses to say which adapters there are");
            return std::move(side_);
        }
        for (adapter_ = 0; adapter_ < adapterCount; ++adapter_) {
            const auto adapter = std::ranges::find(found, adapter_, &FoundAdapter::index);
            adapter == found.end() ? lack() : readAdapter(*adapter);
        }
        if (!where_.empty())
            side_.complaint.emplace(
                Status::refused, fmt::format("{}{}: {}", where_, others_ ? " and others" : "", why_), where_);
        return std::move(side_);
    }

  private:
    // Nothing runs on an adapter that the driver has not.
    void lack() {
        for (const ServiceId& service : servicesOf(adapter_)) at(service.service).running = false;
    }

    void readAdapter(const FoundAdapter& adapter) {
        link_ = static_cast<std::uint8_t>(adapter_);
        // Without these nobody knows whether it is the one that was sent something.
        const bool unnamed = adapter.line.empty() || session_.configuration.driverRevision.empty();
        if (unnamed) complain(adapterName(adapter_), metrics::wordsOf(metrics::Unknown::refused));
        readClients();
        readServers();
        readLecs();
        readIp();
        fillSent();
        for (const ServiceId& service : servicesOf(adapter_)) {
            const bool isLes = service.service >= firstLes && service.service < lecsPlace;
            if (unnamed || (isLes && !at(lecsPlace).whole)) at(service.service).whole = false;
        }
    }

    // The first is said, and whether there are others.
    void complain(const std::string& where, const std::string& why) {
        if (where_.empty())
            where_ = where, why_ = why;
        else
            others_ |= where != where_;
    }

    // Whether all of the answer is there.
    bool got(std::size_t place, const InfoMsgHandler& query) {
        if (!query.answered()) throw Failure(Status::silent, "the driver did not answer");
        if (query.result() == 0 && query.whole()) return true;
        const bool refused = query.result() != 0 && query.decided();
        const std::string why =
            metrics::wordsOf(refused ? metrics::Unknown::refused : metrics::Unknown::incomplete);
        at(place).whole = false;
        complain(ServiceId{adapter_, place}.name().path,
                 refused ? fmt::format("{} ({})", why, query.header().Resp) : why);
        return false;
    }

    SideService& at(std::size_t place) { return side_.services[ServiceId{adapter_, place}.name().path]; }

    // What the driver tells exactly.
    void known(std::size_t place, const std::set<std::string>& keys, Mark mark = Mark::none) {
        put({adapter_, place}, seen_, keys, mark, at(place));
    }

    static std::int32_t flag(bool state, std::int32_t inFile) { return !state ? 0 : inFile ? inFile : 1; }

    // Whether a service is there. The state of one that is not tells that it is off, and nothing else.
    // A flag with an unnamed code in the file counts as true.
    bool isThere(std::size_t place, bool state, std::int32_t& enabled, std::int32_t inFile) {
        at(place).running = state;
        enabled = flag(state, inFile);
        known(place, {"enabled"});
        return state;
    }

    void readClients() {
        for (std::size_t m = 0; m < asIndex(lecCount); ++m) {
            AtmLEC& lec = seen_.lec[asIndex(adapter_)][m];
            const AtmLEC& file = files_.lec[asIndex(adapter_)][m];
            lecInfo query(session_.channel(), link_);
            const auto unit = static_cast<std::uint8_t>(m);
            const LecStateView state = query.GetState(link_, unit);
            if (!got(firstLec + m, query)) continue;
            const std::uint32_t code = state.state();
            const bool onPvcs = code == lecOnPvcs && state.flag() != 0;
            if (!isThere(firstLec + m, code != lecAbsent, lec.enabled, file.enabled)) continue;
            if (onPvcs) {
                lec.pvcOnly = flag(true, file.pvcOnly);
                known(firstLec + m, {"pvcOnly"});
            }
            readClientSettings(m, query);
            readPvcs(firstLec + m, query);
        }
    }

    void readClientSettings(std::size_t m, lecInfo& query) {
        const LecStatsView stats = query.GetStats();
        if (!got(firstLec + m, query)) return;
        AtmLEC& lec = seen_.lec[asIndex(adapter_)][m];
        lec.elanName = stats.elanName();
        lec.mtuClass = stats.mtuClass();
        lec.elanType = stats.elanType() - 1;  // the file counts from 0
        const AtmLEC& file = files_.lec[asIndex(adapter_)][m];
        // Its LECS may have told it something else than the file, unless that was changed and not sent.
        const ServiceId service{adapter_, firstLec + m};
        for (const char* key : {"elanName", "mtu", "elanType"}) {
            const bool learned = file.useLecs != 0 && !file.pvcOnly && !changedUnsent(service, key);
            known(service.service, {key}, learned ? Mark::learned : Mark::none);
        }
        if (file.useLecs || stats.vci(LecConnection::controlDirect) == 0) return;
        lec.address = stats.address(LecConnection::controlDirect);
        known(firstLec + m, {"networkPrefix", "esiSelector"});
    }

    // A PVC is in the table of connections as soon as it is added, whether or not the client is up; the other
    // rows were set up by signalling.
    static AtmBridgedPvc pvcOf(const LecRowView& row) {
        AtmBridgedPvc pvc;
        pvc.mac = row.mac();
        pvc.vci = row.vci();
        return pvc;
    }
    static AtmRoutedPvc pvcOf(const IpRowView& row) {
        AtmRoutedPvc pvc;
        pvc.ip = row.ip();
        pvc.vci = static_cast<std::uint16_t>(row.vci());
        return pvc;
    }
    void readPvcs(std::size_t place, auto& query) {
        const auto table = query.GetEntireTable();  // false: it has no rows
        if (!got(place, query)) return;
        SideList list{true, {}};
        for (const auto row : table)
            if (!row.switched()) addIdentity(list, pvcOf(row));
        at(place).lists["pvcs"] = std::move(list);
    }

    static void addIdentity(SideList& list, const auto& entry) {
        const std::string text = identityOf(entry);
        Json json = entryJson(entry);
        for (const char* unknown : {"encapsulation", "broadcast", "rate"})
            if (json.is_object()) json.erase(unknown);
        list.entries.push_back({text, text, std::move(json)});
    }

    void readServers() {
        for (std::size_t m = 0; m < asIndex(lesCount); ++m) {
            AtmLES& les = seen_.les[asIndex(adapter_)][m];
            lesInfo query(session_.channel(), link_);
            const LesStateView state = query.GetState(link_, static_cast<std::uint8_t>(m));
            if (!got(firstLes + m, query) || !isThere(firstLes + m, state.state() != lesAbsent, les.enabled,
                                                      files_.les[asIndex(adapter_)][m].enabled))
                continue;
            const LesStatsView stats = query.GetStats();
            if (!got(firstLes + m, query)) continue;
            les.elanName = stats.elanName();
            les.mtuClass = stats.mtuClass();
            les.elanType = stats.elanType();
            known(firstLes + m, {"elanName", "mtu", "elanType"});
        }
    }

    void readLecs() {
        constexpr std::size_t place = lecsPlace;  // it has the clients of all LES
        AtmLECS& lecs = seen_.lecs[asIndex(adapter_)];
        lecsInfo query(session_.channel(), link_);
        const LecsStateView state = query.GetState(link_, 0);
        if (!got(place, query)) return;
        const bool running = state.state() == lecsRunning;
        if (!isThere(place, state.state() != lecsAbsent, lecs.enabled,
                     files_.lecs[asIndex(adapter_)].enabled))
            return;
        if (const LecsStatsView stats = query.GetStats(); got(place, query)) {
            lecs.address = stats.address();
            lecs.elanType = stats.elanType();
            lecs.etherMtuClass = stats.etherMtuClass();
            lecs.tokenRingMtuClass = stats.tokenRingMtuClass();
            known(place, {"elanType", "ethernetMtu", "tokenRingMtu", "networkPrefix", "esiSelector"});
        }
        if (running) readMappings(place, query);  // its table is empty until then
    }

    void readIp() {
        constexpr std::size_t place = lecsPlace + 1;
        ip1577Info query(session_.channel(), link_);
        const IpStateView state = query.GetState(link_, 0);
        if (got(place, query) &&
            isThere(place, state.state() != ipAbsent, seen_.ip1577[asIndex(adapter_)].enabled,
                    files_.ip1577[asIndex(adapter_)].enabled))
            readPvcs(place, query);
    }

    void readMappings(std::size_t place, lecsInfo& query) {
        const auto table = query.GetEntireTable();
        if (!got(place, query)) return;
        std::vector<SideList> lists(lesCount, SideList{true, {}});
        for (const LecsRowView row : table)
            if (row.kind() != LecsRowView::temporary && row.les() < lists.size())
                addIdentity(lists[row.les()], row.client());
        for (std::size_t m = 0; m < lists.size(); ++m)
            at(firstLes + m).lists["clients"] = std::move(lists[m]);
    }

    // What the driver cannot be asked for. What was neither sent nor changed since the driver was loaded it
    // has from the files.
    void fillSent() {
        const DriverIdentity identity = ::identityOf(session_, adapter_);
        for (const ServiceId& service : servicesOf(adapter_)) {
            SideService& of = at(service.service);
            if (!of.running) continue;
            for (const std::string& key : keysOf(service, files_)) {
                if (of.values.contains(key)) continue;
                const auto found = sent_.find(adapter_, identity, service.name().path, key);
                if (found.value)
                    of.values[key] = {found.value->text, settingJson(service, key, found.value->text),
                                      Mark::sent};
                else if (changedUnsent(service, key))
                    of.values[key] = {"unknown", Json(), Mark::unknown};
            }
        }
    }

    // The history is read when it is needed.
    bool changedUnsent(const ServiceId& service, const std::string& key) {
        if (!unsent_) unsent_.emplace();
        return unsent_->changed(service.name().path, key);
    }

    Session& session_;
    const AtmDevices& files_;
    AtmDevices seen_;
    LastSent sent_;
    std::optional<Unsent> unsent_;
    Side side_;
    std::string where_, why_;  // of the complaint
    bool others_ = false;
    int adapter_ = 0;
    std::uint8_t link_ = 0;
};

}  // namespace

Side sideOf(const AtmDevices& devices, const std::vector<int>& adapters, const Session& session) {
    Side side;
    for (const int adapter : adapters)
        for (const ServiceId& service : servicesOf(adapter)) {
            SideService& of = side.services[service.name().path];
            put(service, devices, keysOf(service, devices), Mark::none, of);
            const std::string unknown = session.unknownListOf(service);
            of.whole = unknown.empty();
            if (of.whole)
                putList(service, devices, of);
            else if (!side.complaint)
                side.complaint.emplace(Status::wrongValue, leftOutMessage(unknown), unknown);
        }
    return side;
}

Side sideOf(const Json& document, const AtmDevices& devices) {
    Side side;
    for (int adapter = 0; adapter < adapterCount; ++adapter) {
        const auto of = document.find(adapterName(adapter));
        if (of == document.end()) continue;
        for (const ServiceId& service : servicesOf(adapter)) {
            const auto settings = of->find(shortName(service));
            if (settings == of->end()) continue;
            SideService& to = side.services[service.name().path];
            std::set<std::string> keys;
            for (const auto& [key, value] : settings->items()) keys.insert(key);
            put(service, devices, keys, Mark::none, to);
            if (keys.contains(listOfService(service))) putList(service, devices, to);
        }
    }
    return side;
}

Side sentSide(Session& session) {
    requireDriver(session);
    LastSent sent;
    sent.load();
    Side side;
    for (const FoundAdapter& adapter : session.discovery().adapters)
        for (const ServiceId& service : servicesOf(adapter.index))
            for (const std::string& key : keysOf(service, session.devices))
                if (const auto found = sent.find(adapter.index, identityOf(session, adapter.index),
                                                 service.name().path, key);
                    found.value)
                    side.services[service.name().path].values[key] = {
                        found.value->text, settingJson(service, key, found.value->text), Mark::sent};
    return side;
}

Side driverSide(Session& session, const AtmDevices& inFiles) {
    requireDriver(session);
    return Reader(session, inFiles).read();
}
