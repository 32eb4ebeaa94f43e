// What is watched of an adapter beside the pages: plots, and conditions that somebody waits for. There is one
// for each adapter while anybody holds it; it asks the driver over a channel of its own, as often as pages
// are refreshed.
#pragma once

#include "metrics/sampler.h"
#include "toolkit/window/timer.h"
#include "ui/listeners.h"

#include <functional>
#include <memory>
#include <utility>

// Opens the channel for queries, and gives it; or the main window's, which lives longer than any other, when
// the driver accepts no further channel.
DriverChannel& openedForQueries(DriverChannel& own);

class AdapterWatch {
  public:
    // That of the adapter (from 0); made if there is none. Only for the user interface's thread.
    static std::shared_ptr<AdapterWatch> of(zApplication& application, int adapter);
    // The same, or null if nobody holds one.
    static std::shared_ptr<AdapterWatch> present(int adapter);

    AdapterWatch(zApplication& application, int adapter);

    metrics::Sampler& sampler() { return sampler_; }

    // Calls `ticked` after each tick, for as long as the result is kept.
    using Listener = Listeners::Listener;
    [[nodiscard]] Listener listen(std::function<void()> ticked) { return listeners_.add(std::move(ticked)); }

  private:
    void start();
    void tick();

    zApplication& application_;
    int adapter_;
    DriverChannel own_;  // closed if the driver accepts no further channel
    DriverChannel& channel_;
    metrics::Sampler sampler_;
    int period_ = 0;  // of the timer, in milliseconds
    std::unique_ptr<zTimer> timer_;
    Listeners listeners_;
};
