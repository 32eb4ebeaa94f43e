// Waits for a driver that does not answer, which the user can leave.
#pragma once

#include "driver/channel.h"
#include "platform/device.h"
#include "toolkit/window/inputwaits.h"

#include <optional>

// While it exists, a wait for the driver ends when the user waits for something: at once if the driver may be
// silent already. Otherwise, over a socket only, it is looked once, after three seconds, whether the
// channel's last request was sent about that long ago; from then on waits can be left.
class LeavableWaits {
  public:
    LeavableWaits(const zApplication& application, const DriverChannel& channel)
        : application_(application), channel_(channel),
          later_(std::chrono::steady_clock::now() + patience, [this] { look(); }) {
        if (channel.maybeSilent()) ends_.emplace(application);
    }

    bool atOnce() const { return ends_.has_value(); }

  private:
    static constexpr std::chrono::seconds patience{3};

    // Not for a slow driver: if it has answered meanwhile, the last request is recent.
    void look() {
        if (channel_.waitedFor() + std::chrono::seconds(1) >= patience) ends_.emplace(application_);
    }

    const zApplication& application_;
    const DriverChannel& channel_;
    std::optional<zInputEndsWaits> ends_;
    const platform::WhileWaiting later_;
};
