// Waits for a driver that does not answer, which the user can leave.
#pragma once

#include "driver/channel.h"
#include "platform/device.h"
#include "toolkit/window/inputwaits.h"

#include <optional>

// While it exists, whatever comes from the X server ends a wait on this channel: at once where the driver has
// been silent before, else when it has been waited for so long that it may well be silent. The first can be
// left over a socket only.
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

    // A slow driver that has answered meanwhile is not left.
    void look() {
        if (channel_.waitedFor() + std::chrono::seconds(1) >= patience) ends_.emplace(application_);
    }

    const zApplication& application_;
    const DriverChannel& channel_;
    std::optional<zInputEndsWaits> ends_;
    const platform::WhileWaiting later_;
};
