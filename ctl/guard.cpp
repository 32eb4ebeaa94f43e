#include "ctl/guard.h"

#include "change/pastchanges.h"
#include "change/statedirectory.h"
#include "change/takeback.h"
#include "ctl/changing.h"
#include "ctl/status.h"
#include "platform/host.h"
#include "platform/user.h"

#include <cerrno>
#include <cstring>
#include <fmt/format.h>
#include <unistd.h>
#include <utility>

GuardedChange::GuardedChange(Session& session, double seconds, std::vector<std::string> services, bool driver)
    : seconds_(seconds) {
    if (seconds <= 0) return;
    platform::HostPath history;
    if (makeStateDirectory(historyDirectory, history) != 0)
        throw Failure(
            Status::notDone,
            fmt::format("{}: {}: nothing could take the change back", historyDirectory, std::strerror(errno)),
            std::string(historyDirectory));
    // The change itself may take as long as the driver is waited for.
    const double longest = seconds + session.options().timeout.count() + 60;
    const platform::Account user = platform::realUser();
    const PendingChange pending{.change = nextChange(),
                                .boot = platform::bootId(),
                                .deadline = deadlineIn(longest),
                                .user = user.name.empty() ? std::to_string(user.id) : user.name,
                                .from = userPlace(),
                                .driver = driver,
                                .maker = ::getpid(),
                                .makerBegin = platform::processBegin(::getpid()),
                                .services = std::move(services)};
    if (startGuard(pending, [](unsigned) { takeBackPending("tvctl"); }) != 0)
        throw Failure(Status::notDone, fmt::format("the guard cannot be started: {}", std::strerror(errno)));
}

GuardedChange::~GuardedChange() {
    if (seconds_ > 0 && !made_) removePending();
}

void GuardedChange::done() {
    made_ = true;
    auto pending = pendingChange();
    if (seconds_ <= 0 || !pending) return;
    pending->deadline = deadlineIn(seconds_);
    pending->made = true;
    if (notePending(*pending) != 0)
        throw Failure(Status::notDone, fmt::format("the change is taken back: its end cannot be noted: {}",
                                                   std::strerror(errno)));
}
