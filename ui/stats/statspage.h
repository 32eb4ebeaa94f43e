// What the pages of the statistics notebook have in common.
#pragma once

#include "driver/channel.h"
#include "toolkit/controls/notebook.h"
#include "ui/mybitmapbutton.h"
#include "ui/timerpage.h"

#include <cstdint>
#include <memory>

// Where a page stands and what it shows: the adapter that was the current one when its dialog was opened, over the
// dialog's channel, which outlives the page.
struct StatsSource {
    zApplication& application;
    zNotebook& notebook;
    DriverChannel& channel;  // closed: there is no driver
    std::uint8_t adapter;
    bool silent = false;  // a page has waited in vain for an answer

    // A query object, or none without a driver.
    template <class Info> std::unique_ptr<Info> query() const {
        return channel ? std::make_unique<Info>(channel, adapter) : nullptr;
    }
};

class StatsPage : public TimerPage {
  public:
    // A page that could not be filled when its dialog was made is filled first.
    void enableTimer() override {
        if (!filled_) Update();
        refreshWith([this] { Update(); });
    }

    // Asks the driver and shows what is new. Nothing without a driver.
    void Update() { refreshIfOpen(false); }

    // The same, with the counters from 0 again.
    void ClearStats() override { refreshIfOpen(true); }

  protected:
    StatsPage(const StatsSource& source, const zLayout& layout)
        : TimerPage(source.application), board_(source.notebook.addPage(layout)), open_(source.channel),
          waits_(source.channel) {}

    virtual void refresh(bool clear) = 0;

    // A request of this refresh has been waited for in vain: the others are not made then.
    bool waited() const { return waits_.any(); }

    // To be called at the end of the constructor: fills the page for the first time. Where the driver has been
    // silent for another page this one waits until it is on top.
    void fillOnce(StatsSource& source) {
        if (source.silent) return;
        Update();
        source.silent = open_ && waited();
    }

    zBoard& board() const { return board_; }

  private:
    void refreshIfOpen(bool clear) {
        if (!open_) return;
        filled_ = true;
        waits_.restart();
        refresh(clear);
    }

    zBoard& board_;
    bool open_;
    bool filled_ = false;
    VainWaits waits_;  // since the refresh began
};
