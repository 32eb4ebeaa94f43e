// Base of the pages of the statistics notebook.
#pragma once

#include "driver/channel.h"
#include "toolkit/controls/notebook.h"
#include "ui/mybitmapbutton.h"
#include "ui/timerpage.h"

#include <cstdint>
#include <optional>

// Where a page is placed, and what it asks: the dialog's adapter over the dialog's channel, which outlives
// the page.
struct StatsSource {
    zApplication& application;
    zNotebook& notebook;
    DriverChannel& channel;  // closed: there is no driver
    std::uint8_t adapter;
    bool silent = false;  // a request of one of the dialog's pages has timed out

    // A query object, or none without a driver.
    template <class Info> std::optional<Info> query() const {
        return channel ? std::make_optional<Info>(channel, adapter) : std::nullopt;
    }
};

class StatsPage : public TimerPage {
  public:
    // Starts refreshing. A page that was not filled when its dialog was made is filled now.
    void enableTimer() override {
        if (!filled_) Update();
        refreshWith([this] { Update(); });
    }

    // Asks the driver and shows its answers. Does nothing without a driver.
    void Update() { refreshIfOpen(false); }

    // Does what Update() does, and counters start from 0.
    void ClearStats() override { refreshIfOpen(true); }

  protected:
    StatsPage(const StatsSource& source, const zLayout& layout)
        : TimerPage(source.application), board_(source.notebook.addPage(layout)), open_(source.channel),
          timeouts_(source.channel) {}

    virtual void refresh(bool clear) = 0;

    // A request of this refresh timed out; the remaining ones are skipped.
    bool timedOut() const { return timeouts_.any(); }

    // Call last in the constructor: fills the page for the first time. After a timeout on another page of the
    // dialog this page is filled only when it is turned to.
    void fillOnce(StatsSource& source) {
        if (source.silent) return;
        Update();
        source.silent = open_ && timedOut();
    }

    zBoard& board() const { return board_; }

  private:
    void refreshIfOpen(bool clear) {
        if (!open_) return;
        filled_ = true;
        timeouts_.restart();
        refresh(clear);
    }

    zBoard& board_;
    bool open_;
    bool filled_ = false;
    TimeoutWatch timeouts_;  // since the refresh began
};
