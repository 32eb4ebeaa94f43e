// What the driver reports, as show --state prints it.
//
//     adapter1.rxCells = 4711                                {"adapter1":{"rxCells":4711,
//     adapter1.circuits[0].vci = 5                             "circuits":[{"vci":5,...}],
//     adapter1/lec2.state = Joining, state 3                   "lec2":{"state":{"code":3,"text":"Joining"},
//     adapter1/lec2.mtu = unknown                              "mtu":null}}}
//
// A state without words is "state 9", its text in JSON null; a size or kind without a name is "code 7" in
// both. Of a service that is absent only its state is printed; a table that is unknown is null.
#pragma once

#include "ctl/command.h"
#include "metrics/reading.h"

#include <set>
#include <string>
#include <vector>

// A value as it is printed.
struct Printed {
    Json json;  // null: unknown
    std::string text;
};

// How the values of readings are printed, as above unless a derived class says otherwise.
class StatePrinter {
  public:
    StatePrinter() = default;
    virtual ~StatePrinter() = default;
    StatePrinter(const StatePrinter&) = delete;
    StatePrinter& operator=(const StatePrinter&) = delete;

    Tree tree(const std::vector<metrics::Reading>& readings) const;

  protected:
    // The values and tables that are printed, also of an absent service; null: all, of an absent one its
    // state alone.
    virtual const std::set<std::string>* namesOf(const metrics::Place&) const { return nullptr; }
    virtual std::string nameOf(const metrics::Metric& metric) const { return metric.name; }
    virtual Printed print(const metrics::Reading& reading, const metrics::Group& group,
                          const metrics::Metric& metric, std::size_t row) const;
    virtual std::string line(const std::string& where, const std::string& text) const;
    // Rows of a table that is not printed as a whole.
    virtual void putRows(const metrics::Reading&, const metrics::Group&, Tree&) const {}
    Tree leaf(const std::string& where, Printed printed) const;

  private:
    Tree table(const metrics::Reading& reading, const metrics::Group& group, const std::string& where) const;
    void put(const metrics::Reading& reading, Tree& tree) const;
};

// The adapter with all of its services, or the service, with this path: see readPath().
std::vector<metrics::Place> placesAt(const std::string& path);

// Whether the driver has said which adapters there are.
bool saysAdapters(const Discovery& found, const DriverChannel& channel);
// Failure::notThere for an adapter that it does not report.
void requireReported(const Discovery& found, const std::vector<metrics::Place>& places);

// The complaint, and the status, about what the driver did not give.
void complain(const std::vector<metrics::Reader::Debt>& owed, Output& output);

// Of the adapters and services with these paths; none: of all adapters that the driver reports.
// Failure::noDriver, Failure::silent; Failure::notThere for an adapter that the driver does not report.
Output showState(Session& session, const std::vector<std::string>& paths);
