#include "change/takeback.h"

#include "change/audit.h"
#include "change/history.h"
#include "change/merge.h"
#include "config/recordrows.h"
#include "driver/discovery.h"
#include "platform/device.h"
#include "platform/host.h"
#include "platform/user.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <fmt/format.h>
#include <set>
#include <unistd.h>

using namespace std::chrono_literals;

namespace {

constexpr std::array allAdapters{0, 1, 2, 3};
constexpr auto driverPatience = 60s, lockPatience = 60s;

std::string numbered(unsigned change) {
    return fmt::format("{:04}", change);
}

// How a change is taken back.
struct WayBack {
    AtmDevices before = {};  // what the driver was told
    AtmDevices target = {};
    std::vector<PastFile> restored = {};  // empty: the records are written in place of the files
    std::string edited = {};              // a file that has been edited meanwhile
    std::string reason = {};              // why it cannot be taken back
};

// Byte for byte where the files are as the change has left them.
WayBack wayBack(const Configuration& configuration, unsigned number, const std::vector<PastChange>& changes) {
    WayBack back{.before = configuration.base(), .target = configuration.base()};
    const auto change = std::ranges::find(changes, number, &PastChange::number);
    if (change == changes.end()) {  // it was cut off before it came to the files
        dropChange(numbered(number));
        return back;
    }
    const PastFiles past = filesBefore(number, changes);
    if (past.error) return {.reason = fmt::format("{}: {}", past.edited, std::strerror(past.error))};
    if (past.missing) return {.reason = fmt::format("change {} is missing", numbered(past.missing))};
    const bool cut = change->read.record.result == cutOff;
    const auto replaced = replacedFiles(*change);
    AtmDevices told, old;
    const bool known = replaced && recordsWith(replaced->after, told);
    if (known) back.before = told;
    if (past.edited.empty()) {
        if (!past.files.empty() && !recordsWith(past.files, back.target))
            return {.reason = "the files as they were cannot be read"};
        if (past.files.empty() && cut) dropChange(numbered(number));
        back.restored = past.files;
        return back;
    }
    // Somebody has edited a file since: what the change had changed goes back, unless it was edited, and the
    // rest stays.
    if (!known || !recordsWith(replaced->before, old))
        return {.reason = past.edited + " is not as the change left it"};
    back.target = mergeAdapters(allAdapters, back.before, old, configuration.base(), true, {}).devices;
    back.edited = past.edited;
    return back;
}

// Adapters with other settings or lists, or with a service that is restarted.
std::vector<int> adaptersOf(const AtmDevices& before, const AtmDevices& after, const ServiceSets& restarted) {
    std::set<int> adapters;
    for (const int adapter : allAdapters)
        forEachService(adapter, [&](const ServiceName&, auto record, const std::string&, auto bit) {
            const auto &was = record(before), &is = record(after);
            using Record = std::remove_cvref_t<decltype(was)>;
            bool differs = bit(restarted[asIndex(adapter)]);
            if constexpr (hasList<Record>) differs |= *listOf(was) != *listOf(is);
            if (differs) adapters.insert(adapter);
        });
    return {adapters.begin(), adapters.end()};
}

// Of a change that was cut off nobody knows which services were told of it: all that it names count as told.
void addTold(const PendingChange& pending, ServiceSets& sets) {
    if (pending.made) return;
    for (const int adapter : allAdapters)
        forEachService(adapter, [&](const ServiceName& name, auto, const std::string&, auto bit) {
            if (std::ranges::count(pending.services, name.path)) bit(sets[asIndex(adapter)]) = true;
        });
}

// Under the lock. Why the change stays; empty: it is undone, or there is no such change.
std::string undo(Configuration& configuration, const PendingChange& pending) {
    std::vector<PastChange> changes;
    if (const int error = readPastChanges(changes)) return std::strerror(error);
    WayBack back = wayBack(configuration, pending.change, changes);
    if (!back.reason.empty()) return back.reason;

    DriverChannel channel;
    if (pending.driver && channel.open(O_RDWR)) {
        aalInfo query(channel, 0);
        configuration.driverRevision = discoverAdapters(query, back.target).version;
    }
    ChangeOrder order{.adapters = {allAdapters.begin(), allAdapters.end()},
                      .changed = changedServices(allAdapters, back.before, back.target),
                      .before = back.before,
                      .driver = static_cast<bool>(channel),
                      .tellLists = true,
                      .restored = std::move(back.restored),
                      .from = pending.from,
                      .note = fmt::format("change {} was not confirmed", numbered(pending.change))};
    channel.close();
    addTold(pending, order.changed);
    if (order.restored.empty()) order.adapters = adaptersOf(back.before, back.target, order.changed);
    if (order.adapters.empty()) return {};
    configuration.mine() = std::move(back.target);
    AdapterChange taking(configuration, std::move(order));
    taking.finishAlone(lockPatience);
    const ChangeResult& result = taking.result();
    if (!result.failures.empty())
        return fmt::format("{}: {}", result.failures[0].file, result.failures[0].reason);
    if (result.save.state != SaveOutcome::State::done) return "the save failed";
    if (!back.edited.empty() && !result.wrote)
        return fmt::format("{} has been edited where the change changed it, and the driver has it as edited",
                           back.edited);
    return {};
}

// The change stays: the log and the history say so.
void noteStays(const PendingChange& pending, const std::string& reason) {
    const std::string number = numbered(pending.change);
    auditTrouble(number, "guard", reason);
    if (noteResult(number, "not taken back", fmt::format("It was not taken back: {}", reason)) != 0)
        auditTrouble(number, "history", std::strerror(errno));
}

}  // namespace

ServiceSets changedServices(std::span<const int> adapters, const AtmDevices& before,
                            const AtmDevices& after) {
    ServiceSets changed;
    for (const int adapter : adapters)
        forEachService(adapter, [&](const ServiceName&, auto record, const std::string&, auto bit) {
            const auto &was = record(before), &is = record(after);
            bit(changed[asIndex(adapter)]) = !sameSettings(was, is);
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
    auto pending = pendingChange();
    // Another program may have come first.
    const bool mine = pending && (pending->guard == ::getpid() || !pending->guarded());
    if (!mine || pending->left() > 0) {
        configuration.unlock();
        return {};
    }
    pending->guard = ::getpid();
    pending->guardBegin = platform::processBegin(::getpid());
    notePending(*pending);
    configuration.read();
    std::string reason = undo(configuration, *pending);
    if (!reason.empty()) noteStays(*pending, reason);
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
