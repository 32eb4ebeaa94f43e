// Base of the pages of the statistics notebook.
//
// The driver may come and go, and it may be slow. A refresh ends with the first request that gets no answer;
// what the page shows stays and is greyed until a refresh has all its answers, and nothing old is left. It
// also ends, between two requests, when it has run for long and the user waits: see cut().
#pragma once

#include "driver/channel.h"
#include "metrics/rates.h"
#include "metrics/subject.h"
#include "toolkit/controls/notebook.h"
#include "ui/mybitmapbutton.h"
#include "ui/stats/baselines.h"
#include "ui/stats/rated.h"
#include "ui/timerpage.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <utility>
#include <vector>

// Where a page is placed, and what it asks: the dialog's adapter over the dialog's channel, which outlives
// the page.
struct StatsSource {
    zApplication& application;
    zNotebook& notebook;
    DriverChannel& channel;
    std::uint8_t adapter;
    double& linkLimit;  // of the adapter, see metrics::linkLimit(); for all pages of the dialog
};

// What the tooltip of a lamp says when the driver refuses to tell.
constexpr const char* notTold = "The driver does not say";

// What that of a service's lamp says. The words for state 0, that of an absent service, come without it.
template <class View> LampWords serviceWords(const View& reply, std::uint32_t state, const char* words) {
    return {!reply ? notTold : words, state ? std::int64_t{state} : LampWords::noCode};
}

// A lamp or field that shows a state or an alarm, and the name of that value.
struct ShownState {
    const char *control, *value;
};

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

    // Counters per second, smoothed or not, or again as their growth.
    void showRates(bool on);
    bool showsRates() const { return showsRates_; }
    void smoothRates(bool on);
    bool smoothsRates() const { return smoothed_; }

    // What this control shows, of a table its active cell, as a value that can be watched: a counter, or the
    // state or alarm of a lamp or a field. Nothing: of texts, addresses, and lamps without a meaning here.
    std::optional<metrics::Subject> subjectIn(const zControl& control) const;
    const zControl* focused() const { return board_.focused(); }

    // What is asked of the driver and shown now.
    virtual metrics::Place place() const = 0;

    // Called after each refresh.
    std::function<void()> onRefreshed;

  protected:
    StatsPage(const StatsSource& source, const zLayout& layout);

    // Asks and shows. A query that has failed while cut() is true says nothing of the driver: what it would
    // have shown stays, and the refresh ends.
    virtual void refresh(bool clear) = 0;

    // To be called at the end of the constructor: what the page's Clear and its rates are about, and its
    // states. All of it outlives every refresh.
    template <class... Parts> void counts(std::span<const ShownState> states, Parts&... parts) {
        counting_ = {&parts...};
        rated_ = {&parts...};
        states_ = states;
        giveMenus();
    }

    // Other ones from now on.
    void setStates(std::span<const ShownState> states) { states_ = states; }

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

    const int adapter_;  // from 0

  private:
    void giveMenus();
    void refreshUntil(Clock::time_point end, bool clear);
    void heard(const EndedQuery& ended);
    void addRates(unsigned long reopenings);
    void endClear();
    bool withholds();

    zBoard& board_;
    DriverChannel& channel_;
    AnswerWatch answers_;  // since the refresh began
    bool withheld_ = false;
    bool kept_ = false;    // in this refresh
    bool missed_ = false;  // the last refresh got no answer
    std::vector<Counting*> counting_;
    std::vector<Rated*> rated_;
    std::span<const ShownState> states_;
    bool clearing_ = false;  // Clear was pressed and is not done
    bool undo_ = false;      // the last Clear can be taken back
    unsigned long reopenings_;
    bool filled_ = false;  // with the answers of a whole refresh, be they greyed
    bool greyed_ = false;
    // The channel's during a refresh.
    std::function<bool()> interrupt_ = [this] { return withholds(); };
    std::function<void(const EndedQuery&)> heard_ = [this](const EndedQuery& ended) { heard(ended); };
    // Of the refresh that runs: when it ends at the latest, and when to look whether the user waits.
    Clock::time_point end_, look_;
    // What the queries of that refresh have brought, and when the last one ended.
    std::vector<std::pair<QueryId, std::shared_ptr<const metrics::Reply>>> replies_;
    Clock::time_point asked_;

    bool showsRates_ = false, smoothed_ = false;
    double& linkLimit_;
    metrics::Rates rates_;
    metrics::Place ratesOf_;           // what the last readings are of
    Clock::time_point lastReading_{};  // their time
};
