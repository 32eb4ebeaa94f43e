#include "change/takeback.h"

#include "change/audit.h"
#include "config/recordrows.h"
#include "driver/discovery.h"
#include "platform/device.h"
#include "platform/user.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <fmt/format.h>

using namespace std::chrono_literals;

namespace {

constexpr std::array allAdapters{0, 1, 2, 3};
constexpr auto driverPatience = 60s, lockPatience = 60s;

std::string numbered(unsigned change) {
    return fmt::format("{:04}", change);
}

// Under the lock. Why the change stays; empty: it is undone, or there is no such change.
std::string undo(Configuration& configuration, const PendingChange& pending) {
    std::vector<PastChange> changes;
    if (const int error = readPastChanges(changes)) return std::strerror(error);
    const auto isIt = [&](const PastChange& change) { return change.number == pending.change; };
    if (std::ranges::none_of(changes, isIt)) return {};  // it had not come to its end
    PastFiles past = filesBefore(pending.change, changes);
    if (past.error) return fmt::format("{}: {}", past.edited, std::strerror(past.error));
    if (!past.edited.empty()) return past.edited + " is not as the change left it";
    if (past.files.empty()) return {};

    AtmDevices before = configuration.mine(), target;
    if (!recordsWith(past.files, target)) return "the files as they were cannot be read";
    DriverChannel channel;
    if (channel.open(O_RDWR)) {
        aalInfo query(channel, 0);
        configuration.driverRevision = discoverAdapters(query, target).version;
    }
    ChangeOrder order{.adapters = {allAdapters.begin(), allAdapters.end()},
                      .changed = changedServices(allAdapters, before, target),
                      .before = before,
                      .driver = static_cast<bool>(channel),
                      .tellLists = true,
                      .restored = std::move(past.files),
                      .from = pending.from,
                      .note = fmt::format("change {} was not confirmed", numbered(pending.change))};
    channel.close();
    configuration.mine() = target;
    AdapterChange change(configuration, std::move(order));
    change.finishAlone(lockPatience);
    const ChangeResult& result = change.result();
    if (!result.failures.empty())
        return fmt::format("{}: {}", result.failures[0].file, result.failures[0].reason);
    return result.wrote ? "" : "the save failed";
}

}  // namespace

ServiceSets changedServices(std::span<const int> adapters, const AtmDevices& before,
                            const AtmDevices& after) {
    ServiceSets changed;
    for (const int adapter : adapters)
        forEachService(adapter, [&](const ServiceName&, auto record, const std::string&, auto bit) {
            const auto &was = record(before), &is = record(after);
            using Record = std::remove_cvref_t<decltype(was)>;
            bit(changed[asIndex(adapter)]) = std::ranges::any_of(
                keyRows<Record>(), [&](const KeyRow<Record>& row) { return !sameField(row.field, was, is); });
        });
    return changed;
}

bool recordsWith(const std::vector<PastFile>& files, AtmDevices& devices) {
    devices = {};
    DriverPdfEdit editor(nullptr, false, devices);
    for (const PastFile& file : files) editor.replaceText(file.name, file.content);
    return editor.ReadTexts(allAdapters);
}

std::string takeBackPending(const std::string& program) {
    platform::WaitLimit::set(platform::WaitLimit::Clock::now() + driverPatience);
    AtmDevices devices;
    Configuration configuration(program, devices);
    configuration.passPending = true;
    std::string failed;
    if (configuration.lock(lockPatience, failed) != 0) {
        auditTrouble("none", "guard", "the configuration stays locked");
        return "the configuration stays locked";
    }
    const auto pending = pendingChange();
    if (!pending || pending->left() > 0) {
        configuration.unlock();
        return {};
    }
    configuration.read();
    std::string reason = undo(configuration, *pending);
    if (!reason.empty()) auditTrouble(numbered(pending->change), "guard", reason);
    std::string again;
    if (configuration.lock(lockPatience, again) == 0) {
        removePending();
        configuration.unlock();
    }
    return reason;
}

std::string takeOverGuard(const std::string& program) {
    const auto pending = pendingChange();
    if (!pending || !platform::superUser() || pending->guarded()) return {};
    const std::string change = fmt::format("change {}", numbered(pending->change));
    if (pending->left() > 0) {
        if (startGuard(*pending, [program](unsigned) { static_cast<void>(takeBackPending(program)); }) == 0)
            return {};
        return fmt::format("{} waits for its confirmation, and nothing takes it back: {}", change,
                           std::strerror(errno));
    }
    const std::string reason = takeBackPending(program);
    const std::string what = fmt::format("{} of {} was not confirmed in time, and", change, pending->user);
    return reason.empty() ? what + " has been taken back" : fmt::format("{} stays: {}", what, reason);
}
