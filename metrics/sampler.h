// Values of one adapter that are watched over time, whatever page is on top. At each tick the driver is asked
// for what the watched values need, each reply once; what a page has asked since the last tick is not asked
// again.
#pragma once

#include "metrics/rates.h"
#include "metrics/series.h"
#include "metrics/subject.h"

#include <memory>
#include <vector>

namespace metrics {

// Flags are watched as 0 or 1, states as their codes, counters by their rate.
class Watched {
  public:
    explicit Watched(const Subject& subject) : subject_(subject) {}

    const Subject& subject() const { return subject_; }
    const Series& series() const { return series_; }

    // The last sample, and its moment; Unknown::noneBefore at Moment{} before the first one.
    const Rate& last() const { return last_; }
    Moment moment() const { return moment_; }

  private:
    friend class Sampler;
    void sample(const Rate& value, Moment now);

    Subject subject_;
    Series series_;
    Rate last_ = Unknown::noneBefore;
    Moment moment_ = {};
    std::size_t row_ = 0;  // where the row stood last
};

class Sampler {
  public:
    // The channel outlives this object. It is opened by its owner, and is used in ticks alone.
    Sampler(DriverChannel& channel, int adapter, Reader::Clock clock = std::chrono::steady_clock::now)
        : channel_(channel), adapter_(adapter), clock_(std::move(clock)) {}

    // The value is sampled for as long as anybody holds it. Who watches the same shares one.
    std::shared_ptr<const Watched> watch(const Subject& subject);

    // Whether a page that has asked this should call heard().
    bool wants(const Place& place, QueryId query) const;
    // `entire`: see EndedQuery.
    void heard(const Place& place, QueryId query, bool entire, std::shared_ptr<const Reply> reply);
    // A page has noticed that the driver has started anew.
    void driverCame();

    // To be called at regular times, `interval` apart. A tick that comes too soon gives the rates since the
    // last one that came in time.
    void tick(std::chrono::milliseconds interval);

    // Asked when a tick takes noticeably long. True: the user waits, and what is left is not asked. The
    // places that are left get no samples of this tick; the next one begins with them, and counts from the
    // one before.
    std::function<bool()> interrupt;

  private:
    // What a page has asked at one place.
    struct Heard {
        Place place;
        QueryId query;
        std::shared_ptr<const Reply> reply;
    };
    struct AtPlace {
        Place place;
        Rates rates = Rates();
        Moment last = {};  // of the last reading that came in time
    };

    void askLimit(Reader& reader);
    void read(AtPlace& at, Reader& reader, const std::vector<std::shared_ptr<Watched>>& all,
              std::chrono::milliseconds interval);
    static void sample(Watched& watched, const Reading& reading, const Rates& rates);
    std::string driver() const;
    static bool isFresh(const Heard& heard, Moment now, std::chrono::milliseconds interval);

    DriverChannel& channel_;
    int adapter_;
    Reader::Clock clock_;
    std::vector<std::weak_ptr<Watched>> watched_;
    std::vector<AtPlace> places_;
    std::vector<Heard> heard_;
    std::optional<double> limit_;  // of this driver's link
    unsigned long drivers_ = 0;    // how often a page has noticed a new one
    unsigned long openings_ = 0;   // how often the channel had to be opened again
    Moment quiet_ = {};            // nothing is asked before this moment
    bool withheld_ = false;        // something in this tick
};

}  // namespace metrics
