// Base of the pages of the statistics notebook.
//
// The driver may come and go, and it may be slow. A refresh ends with the first request that gets no answer;
// what the page shows stays and is greyed until a refresh has all its answers, and nothing old is left. It
// also ends, between two requests, when it has run for long and the user waits: see cut().
#pragma once

#include "driver/channel.h"
#include "toolkit/controls/notebook.h"
#include "ui/mybitmapbutton.h"
#include "ui/stats/baselines.h"
#include "ui/timerpage.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <vector>

// Where a page is placed, and what it asks: the dialog's adapter over the dialog's channel, which outlives
// the page.
struct StatsSource {
    zApplication& application;
    zNotebook& notebook;
    DriverChannel& channel;
    std::uint8_t adapter;
};

// What the tooltip of a lamp says when the driver refuses to tell.
constexpr const char* notTold = "The driver does not say";

// What that of a service's lamp says. The words for state 0, that of an absent service, come without it.
template <class View> LampWords serviceWords(const View& reply, std::uint32_t state, const char* words) {
    return {!reply ? notTold : words, state ? std::int64_t{state} : LampWords::noCode};
}

class StatsPage : public TimerPage {
  public:
    using Clock = std::chrono::steady_clock;

    // Starts refreshing; at once when the window is painted if the page shows nothing of the driver yet, or
    // greyed values of which the driver has not been asked since.
    void enableTimer() override;

    // Asks the driver and shows its answers.
    void Update() { refreshUntil(Clock::time_point::max(), false); }

    // Does what Update() does, and counters start from 0.
    void ClearStats() override;

    // Takes the last Clear back: once, and only while the driver that it was for is there.
    bool canUndoClear() const { return undo_ || clearing_; }
    void undoClear();

    // Update() for a dialog that is opened: no request is sent after `end`. A page that has not got all its
    // answers by then is filled when it is turned to.
    void fill(Clock::time_point end) { refreshUntil(end, false); }

    // The driver does not answer another page of the dialog.
    void grey();

    // Called after each refresh.
    std::function<void()> onRefreshed;

  protected:
    StatsPage(const StatsSource& source, const zLayout& layout);

    // Asks and shows. A query that has failed while cut() is true says nothing of the driver: what it would
    // have shown stays, and the refresh ends.
    virtual void refresh(bool clear) = 0;

    // To be called at the end of the constructor: what the page's Clear is about. Its members outlive every
    // refresh.
    void counts(std::initializer_list<Counting*> all);

    // The driver has started anew. It may know what the last one did not; nothing is cleared any more.
    virtual void driverCame() {}

    // What the page shows is from before a loss. What the driver then refuses or does not report either gets
    // an empty text or a greyed lamp, or stays with keptOldValues().
    bool old() const { return greyed_; }

    // To be called in a refresh when the driver has refused a query and old values stay: greyed ones stay
    // greyed.
    void keptOldValues() { kept_ = true; }

    // In this refresh a request got no answer, or has not been sent because the user waits.
    bool cut() const { return withheld_ || answers_.missed(); }

    zBoard& board() const { return board_; }

  private:
    void refreshUntil(Clock::time_point end, bool clear);
    void endClear();
    bool withholds();

    zBoard& board_;
    DriverChannel& channel_;
    AnswerWatch answers_;  // since the refresh began
    bool withheld_ = false;
    bool kept_ = false;    // in this refresh
    bool missed_ = false;  // the last refresh got no answer
    std::vector<Counting*> counting_;
    bool clearing_ = false;  // Clear was pressed and is not done
    bool undo_ = false;      // the last Clear can be taken back
    unsigned long reopenings_;
    bool filled_ = false;  // with the answers of a whole refresh, be they greyed
    bool greyed_ = false;
    std::function<bool()> interrupt_ = [this] { return withholds(); };  // the channel's during a refresh
    // Of the refresh that runs: when it ends at the latest, and when to look whether the user waits.
    Clock::time_point end_, look_;
};
