#include "change/sent.h"

#include "change/audit.h"
#include "change/sentfile.h"
#include "change/statedirectory.h"
#include "driver/dai_api.h"
#include "platform/debuglog.h"
#include "platform/files.h"
#include "platform/host.h"
#include "platform/stream.h"
#include "platform/wallclock.h"

#include <cerrno>
#include <cstring>
#include <fmt/format.h>

using platform::files;
using platform::HostPath;

namespace {

constexpr std::size_t largest = 2U << 20;  // far more than all services of eight adapters take

std::string systemPath() {
    return fmt::format("{}/sent.json", stateDirectory);
}

// Why values for `then` tell nothing about `now`, or empty when they do.
std::string difference(const DriverIdentity& then, const DriverIdentity& now) {
    if (then.boot.empty() || now.boot.empty()) return "The system does not tell when it was started.";
    if (then.boot != now.boot) return "The system has been restarted since.";
    if (then.revision.empty() || now.revision.empty()) return "The driver does not tell its revision.";
    if (then.revision != now.revision) return "The driver has another revision now.";
    if (then.mac.empty() || now.mac.empty()) return "The driver does not tell the adapter's MAC address.";
    if (then.mac != now.mac) return "The adapter has another MAC address now.";
    if (then.device != now.device) return "The driver has been loaded since.";
    return {};
}

}  // namespace

DriverIdentity driverIdentity(const std::string& revision, const std::string& mac) {
    struct stat node {};
    std::string device;
    if (files().status(platform::hostPath(devbase), node) == 0)
        device = fmt::format("{}.{}.{}", node.st_ino, node.st_ctim.tv_sec, node.st_ctim.tv_nsec);
    return {platform::bootId(), revision, mac, device};
}

void LastSent::load() {
    *this = {};
    std::string text;
    if (!platform::readWhole(platform::hostPath(systemPath()), text, largest)) {
        if (errno != ENOENT) tvlog << systemPath() << ": " << std::strerror(errno) << std::endl;
    } else if (!SentFile::read(text, *this)) {
        tvlog << systemPath() << " - damaged or of another format, not used" << std::endl;
    }
}

// Not brought to the disk: after a loss of power nothing in it holds any more.
int LastSent::save() const {
    HostPath directory;
    const HostPath file = platform::hostPath(systemPath());
    if (makeStateDirectory(stateDirectory, directory) == 0 &&
        platform::replaceWhole(file, SentFile::text(*this), 0600, platform::OnDisk::later) == 0)
        return 0;
    const std::string reason = fmt::format("{}: {}", systemPath(), std::strerror(errno));
    tvlog << "Last sent - " << reason << std::endl;
    auditTrouble("none", "sent", reason);
    files().remove(file);
    return -1;
}

void LastSent::note(int adapter, const DriverIdentity& identity, const std::string& service,
                    const std::map<std::string, std::string>& values, std::time_t now) {
    Adapter& to = adapters_[adapter];
    if (to.identity != identity) {
        if (!to.services.empty()) to.forgotten = difference(to.identity, identity);
        to.services.clear();
        to.identity = identity;
    }
    for (const auto& [key, text] : values) to.services[service][key] = {text, platform::dateAndTime(now)};
}

void LastSent::forget(int adapter, const std::string& reason) {
    adapters_[adapter] = {.identity = {}, .forgotten = reason, .services = {}};
}

void LastSent::forgetService(int adapter, const std::string& service) {
    if (const auto of = adapters_.find(adapter); of != adapters_.end()) of->second.services.erase(service);
}

void LastSent::forgetAll(const std::string& reason) {
    adapters_.clear();
    forgotten_ = reason;
}

LastSent::Found LastSent::find(int adapter, const DriverIdentity& now, const std::string& service,
                               const std::string& key) const {
    const auto of = adapters_.find(adapter);
    if (of != adapters_.end()) {
        if (const auto values = of->second.services.find(service); values != of->second.services.end())
            if (const auto value = values->second.find(key); value != values->second.end()) {
                const std::string reason = difference(of->second.identity, now);
                return {reason.empty() ? &value->second : nullptr, reason};
            }
        if (!of->second.forgotten.empty()) return {nullptr, of->second.forgotten};
    }
    return {nullptr, forgotten_.empty() ? "It has not been sent." : forgotten_};
}
