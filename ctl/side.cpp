#include "ctl/side.h"

#include "change/pastchanges.h"
#include "change/saverecord.h"
#include "change/sent.h"
#include "ctl/entries.h"
#include "ctl/listing.h"
#include "ctl/settings.h"
#include "ctl/status.h"
#include "driver/dai_api.h"
#include "model/statecodes.h"
#include "platform/files.h"
#include "platform/stream.h"
#include "platform/wallclock.h"

#include <algorithm>
#include <fmt/format.h>

namespace {

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

// Asks the driver; a request without an answer ends all.
class Reader {
  public:
    Reader(Session& session, const AtmDevices& inFiles) : session_(session), files_(inFiles) { sent_.load(); }

    Side read() {
        Side side;
        for (const FoundAdapter& adapter : session_.discovery().adapters) {
            adapter_ = adapter.index;
            link_ = static_cast<std::uint8_t>(adapter.index);
            readClients(side);
            readServers(side);
            readServerAndIp(side);
            fillSent(side);
        }
        return side;
    }

  private:
    template <class View> View answered(View view, const reqParam& query) const {
        if (!view && !query.decided()) throw Failure(Status::silent, "the driver did not answer");
        return view;
    }

    SideService& at(Side& side, std::size_t place) const {
        return side[ServiceId{adapter_, place}.name().path];
    }

    // What the driver tells exactly.
    void known(Side& side, std::size_t place, const std::set<std::string>& keys,
               Mark mark = Mark::none) const {
        put({adapter_, place}, seen_, keys, mark, at(side, place));
    }

    // Whether a service is there. The state of one that is not tells that it is off, and nothing else.
    bool isThere(Side& side, std::size_t place, bool state, std::int32_t& enabled) const {
        at(side, place).running = state;
        enabled = state;
        known(side, place, {"enabled"});
        return state;
    }

    void readClients(Side& side) {
        for (std::size_t m = 0; m < asIndex(lecCount); ++m) {
            AtmLEC& lec = seen_.lec[asIndex(adapter_)][m];
            lecInfo query(session_.channel(), link_);
            const auto unit = static_cast<std::uint8_t>(m);
            const LecStateView state = answered(query.GetState(link_, unit), query);
            const std::uint32_t code = state ? state.state() : 0;
            const bool onPvcs = state && code == lecOnPvcs && state.flag() != 0;
            if (!state || !isThere(side, firstLec + m, code != lecAbsent, lec.enabled)) continue;
            if (onPvcs) {
                lec.pvcOnly = 1;
                known(side, firstLec + m, {"pvcOnly"});
            }
            readClientSettings(side, m, query);
            readPvcs(side, firstLec + m, query);
        }
    }

    void readClientSettings(Side& side, std::size_t m, lecInfo& query) {
        const LecStatsView stats = answered(query.GetStats(), query);
        if (!stats) return;
        AtmLEC& lec = seen_.lec[asIndex(adapter_)][m];
        lec.elanName = stats.elanName();
        lec.mtuClass = stats.mtuClass();
        lec.elanType = stats.elanType() - 1;  // the file counts from 0
        const AtmLEC& file = files_.lec[asIndex(adapter_)][m];
        // Its LECS may have told it something else than the file, unless that was changed and not sent.
        const ServiceId service{adapter_, firstLec + m};
        for (const char* key : {"elanName", "mtu", "elanType"}) {
            const bool learned = file.useLecs != 0 && !file.pvcOnly && !changedUnsent(service, key);
            known(side, service.service, {key}, learned ? Mark::learned : Mark::none);
        }
        if (file.useLecs || stats.vci(LecConnection::controlDirect) == 0) return;
        lec.address = stats.address(LecConnection::controlDirect);
        known(side, firstLec + m, {"networkPrefix", "esiSelector"});
    }

    // The PVCs in a table of connections; the others were set up by signalling.
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
    void readPvcs(Side& side, std::size_t place, auto& query) {
        const auto table = answered(query.GetEntireTable(), query);
        if (!table) return;
        SideList list{true, {}};
        for (const auto row : table)
            if (!row.switched()) addIdentity(list, pvcOf(row));
        at(side, place).lists["pvcs"] = std::move(list);
    }

    static void addIdentity(SideList& list, const auto& entry) {
        const std::string text = identityOf(entry);
        Json json = entryJson(entry);
        for (const char* unknown : {"encapsulation", "broadcast", "rate"})
            if (json.is_object()) json.erase(unknown);
        list.entries.push_back({text, text, std::move(json)});
    }

    void readServers(Side& side) {
        for (std::size_t m = 0; m < asIndex(lesCount); ++m) {
            AtmLES& les = seen_.les[asIndex(adapter_)][m];
            lesInfo query(session_.channel(), link_);
            const LesStateView state = answered(query.GetState(link_, static_cast<std::uint8_t>(m)), query);
            if (!state || !isThere(side, firstLes + m, state.state() != lesAbsent, les.enabled)) continue;
            const LesStatsView stats = answered(query.GetStats(), query);
            if (!stats) continue;
            les.elanName = stats.elanName();
            les.mtuClass = stats.mtuClass();
            les.elanType = stats.elanType();
            known(side, firstLes + m, {"elanName", "mtu", "elanType"});
        }
    }

    void readServerAndIp(Side& side) {
        constexpr std::size_t lecsPlace = firstLes + lesCount, ipPlace = lecsPlace + 1;
        AtmLECS& lecs = seen_.lecs[asIndex(adapter_)];
        lecsInfo query(session_.channel(), link_);
        const LecsStateView state = answered(query.GetState(link_, 0), query);
        if (state && isThere(side, lecsPlace, state.state() != lecsAbsent, lecs.enabled)) {
            if (const LecsStatsView stats = answered(query.GetStats(), query)) {
                lecs.address = stats.address();
                lecs.elanType = stats.elanType();
                lecs.etherMtuClass = stats.etherMtuClass();
                lecs.tokenRingMtuClass = stats.tokenRingMtuClass();
                known(side, lecsPlace,
                      {"elanType", "ethernetMtu", "tokenRingMtu", "networkPrefix", "esiSelector"});
            }
            readMappings(side, query);
        }
        ip1577Info ip(session_.channel(), link_);
        const IpStateView ipState = answered(ip.GetState(link_, 0), ip);
        if (ipState &&
            isThere(side, ipPlace, ipState.state() != ipAbsent, seen_.ip1577[asIndex(adapter_)].enabled))
            readPvcs(side, ipPlace, ip);
    }

    void readMappings(Side& side, lecsInfo& query) {
        const auto table = answered(query.GetEntireTable(), query);
        if (!table) return;
        std::vector<SideList> lists(lesCount, SideList{true, {}});
        for (const LecsRowView row : table)
            if (row.kind() != LecsRowView::temporary && row.les() < lists.size())
                addIdentity(lists[row.les()], row.client());
        for (std::size_t m = 0; m < lists.size(); ++m)
            at(side, firstLes + m).lists["clients"] = std::move(lists[m]);
    }

    // What the driver cannot be asked for. What was neither sent nor changed since the driver was loaded it
    // has from the files.
    void fillSent(Side& side) {
        const DriverIdentity identity = ::identityOf(session_, adapter_);
        for (const ServiceId& service : servicesOf(adapter_)) {
            SideService& of = at(side, service.service);
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

    // The setting was changed since the driver was loaded, and not sent: the history has it, or the file was
    // edited by somebody else. Whoever may not read the history knows the time of the file only.
    bool changedUnsent(const ServiceId& service, const std::string& key) {
        readHistory();
        if (editedByHand_) return true;
        const std::string where = fmt::format("{}.{}", service.name().path, key);
        for (const PastChange& change : changes_) {
            const ChangeRecord& record = change.read.record;
            const auto isKey = [&](const KeyChange& each) { return each.key == where; };
            const auto isSent = [&](const SentRequest& each) {
                return each.service == service.name().path && each.subject.empty() &&
                       each.answer == RequestResult::taken;
            };
            if (platform::momentOf(change.read.time) < loaded_) return false;
            if (std::ranges::any_of(record.requests, isSent)) return false;
            if (std::ranges::any_of(record.keys, isKey)) return true;
        }
        return false;
    }

    void readHistory() {
        if (historyRead_) return;
        historyRead_ = true;
        struct stat node {
        }, file{};
        const platform::HostPath parameters = platform::hostPath(PdfEdit::parameterFile);
        if (platform::files().status(platform::hostPath(devbase), node) == 0) loaded_ = node.st_ctim.tv_sec;
        if (platform::files().status(parameters, file) != 0) return;
        readPastChanges(changes_);
        editedByHand_ = file.st_mtim.tv_sec > loaded_ && !isAsLeft(parameters);
    }

    // As the last change of the history that replaced it has left it.
    bool isAsLeft(const platform::HostPath& parameters) const {
        std::string content;
        if (!platform::readWhole(parameters, content)) return false;
        for (const PastChange& change : changes_)
            for (const KeptFile& file : change.read.manifest.files)
                if (file.name == PdfEdit::parameterFile) return file.after == contentHash(content);
        return false;
    }

    Session& session_;
    const AtmDevices& files_;
    AtmDevices seen_;
    LastSent sent_;
    std::vector<PastChange> changes_;
    bool historyRead_ = false, editedByHand_ = false;
    std::time_t loaded_ = 0;  // when the driver was loaded, as far as its device tells
    int adapter_ = 0;
    std::uint8_t link_ = 0;
};

}  // namespace

Side sideOf(const AtmDevices& devices, const std::vector<int>& adapters) {
    Side side;
    for (const int adapter : adapters)
        for (const ServiceId& service : servicesOf(adapter)) {
            SideService& of = side[service.name().path];
            put(service, devices, keysOf(service, devices), Mark::none, of);
            putList(service, devices, of);
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
            SideService& to = side[service.name().path];
            std::set<std::string> keys;
            for (const auto& [key, value] : settings->items()) keys.insert(key);
            put(service, devices, keys, Mark::none, to);
            if (keys.contains(listOfService(service))) putList(service, devices, to);
        }
    }
    return side;
}

Side sentSide(Session& session) {
    LastSent sent;
    sent.load();
    Side side;
    for (const FoundAdapter& adapter : session.discovery().adapters)
        for (const ServiceId& service : servicesOf(adapter.index))
            for (const std::string& key : keysOf(service, session.devices))
                if (const auto found = sent.find(adapter.index, identityOf(session, adapter.index),
                                                 service.name().path, key);
                    found.value)
                    side[service.name().path].values[key] = {
                        found.value->text, settingJson(service, key, found.value->text), Mark::sent};
    return side;
}

Side driverSide(Session& session, const AtmDevices& inFiles) {
    session.discovery();
    if (!session.channel()) throw session.noDriver();
    if (!session.hasDriver()) throw Failure(Status::silent, "the driver did not answer");
    return Reader(session, inFiles).read();
}
