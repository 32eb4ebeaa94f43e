// What the user waits for ("Watch for..."). There is one such object for the whole program, which goes on
// when pages and windows are closed. What is raised or over is told to syslog, and windows call for attention
// (conditionmark.h). Conditions last until the program ends.
#pragma once

#include "metrics/condition.h"
#include "toolkit/window/window.h"
#include "ui/adapterwatch.h"
#include "ui/listeners.h"

#include <ctime>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class Conditions {
  public:
    // Made if there is none; it lives while anybody holds it, and no longer than the application. Only for
    // the user interface's thread.
    static std::shared_ptr<Conditions> of(zApplication& application);

    explicit Conditions(zApplication& application) : application_(application) {}

    struct Waiting {
        metrics::Condition condition;
        std::shared_ptr<const metrics::Watched> value;
        std::time_t raisedAt = 0, overAt = 0;  // the last time; 0: never
        bool seen = true;                      // by the user, since it was raised
    };
    const std::vector<Waiting>& all() const { return all_; }  // in the order in which they were added

    // One that is there already stays as it is.
    void add(const metrics::Subject& subject, const metrics::Criterion& criterion);
    void remove(std::size_t position);
    void haveSeen();  // all

    // What is raised and was not seen, of one adapter or of all, in a few words; empty: nothing.
    std::string news(std::optional<int> adapter) const;

    // Calls `changed` after each tick and each change, for as long as the result is kept.
    using Listener = Listeners::Listener;
    [[nodiscard]] Listener listen(std::function<void()> changed) {
        return listeners_.add(std::move(changed));
    }

    // The windows. One that asks comes in place of the one before, and so does a list.
    void askFor(const metrics::Subject& subject);  // "Watch for"
    void askFor(const metrics::Place& place);      // which of its values; then that
    void list();                                   // "Watched Conditions"
    void closeAsking() { asking_.reset(); }
    void closeList() { list_.reset(); }

  private:
    // Of an adapter with conditions.
    struct Adapter {
        std::shared_ptr<AdapterWatch> watch;
        AdapterWatch::Listener listener;
    };

    void ticked(int adapter);

    zApplication& application_;
    std::map<int, Adapter> adapters_;
    std::vector<Waiting> all_;
    Listeners listeners_;
    std::unique_ptr<zFormDialog> asking_, list_;
};
