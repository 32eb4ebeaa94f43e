#include "ui/adapterwatch.h"

#include "model/settings.h"
#include "platform/device.h"
#include "toolkit/window/inputwaits.h"
#include "ui/leavable.h"

#include <fcntl.h>
#include <map>

namespace {

std::map<int, std::weak_ptr<AdapterWatch>>& all() {
    static std::map<int, std::weak_ptr<AdapterWatch>> watches;
    return watches;
}

}  // namespace

DriverChannel& openedForQueries(DriverChannel& own) {
    // Where the driver may be silent, opening has a short limit, so that the window that asks appears soon.
    constexpr std::chrono::milliseconds whileSilent{500};
    if (own.maybeSilent()) platform::WaitLimit::set(std::chrono::steady_clock::now() + whileSilent);
    const bool opened = own.open(O_RDONLY);
    platform::WaitLimit::set(std::chrono::steady_clock::time_point::max());
    if (opened || own.outcome() == Outcome::silent || own.outcome() == Outcome::interrupted) return own;
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
    : application_(application), adapter_(adapter), channel_(openedForQueries(own_)),
      sampler_(channel_, adapter) {
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
        const LeavableWaits leavable(application_, channel_);
        sampler_.tick(std::chrono::milliseconds(period_));
    }
    listeners_.tell();
    if (period_ != timerTime) start();
}
