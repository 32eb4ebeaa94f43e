#include "ui/adapterwatch.h"

#include "model/settings.h"
#include "toolkit/window/inputwaits.h"

#include <fcntl.h>
#include <map>

namespace {

std::map<int, std::weak_ptr<AdapterWatch>>& all() {
    static std::map<int, std::weak_ptr<AdapterWatch>> watches;
    return watches;
}

}  // namespace

DriverChannel& openedForQueries(DriverChannel& own) {
    if (own.open(O_RDONLY) || own.outcome() == Outcome::silent) return own;
    return ioctlDesc.alive() ? ioctlDesc : own;
}

std::shared_ptr<AdapterWatch> AdapterWatch::of(zApplication& application, int adapter) {
    auto watch = present(adapter);
    if (!watch) {
        watch = std::make_shared<AdapterWatch>(application, adapter);
        all()[adapter] = watch;
    }
    return watch;
}

std::shared_ptr<AdapterWatch> AdapterWatch::present(int adapter) {
    return all()[adapter].lock();
}

AdapterWatch::AdapterWatch(zApplication& application, int adapter)
    : application_(application), adapter_(adapter), sampler_(openedForQueries(own_), adapter) {
    sampler_.interrupt = [this] { return zUserWaits(application_); };
    start();
}

void AdapterWatch::start() {
    period_ = timerTime;
    timer_ = std::make_unique<zTimer>(application_, period_, [this] { tick(); });
}

// A listener may be the last who holds this object.
void AdapterWatch::tick() {
    const std::shared_ptr<AdapterWatch> self = present(adapter_);
    {
        std::optional<zInputEndsWaits> leave;
        if (own_.maybeSilent()) leave.emplace(application_);
        sampler_.tick(std::chrono::milliseconds(period_));
    }
    listeners_.tell();
    if (period_ != timerTime) start();
}
