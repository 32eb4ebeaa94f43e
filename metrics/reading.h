// What the driver says of an adapter or a service at one moment. The values stay in the replies until they
// are read, so that a table of thousands of rows costs its bytes alone.
#pragma once

#include "driver/channel.h"
#include "driver/views.h"
#include "metrics/metric.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace metrics {

// When the driver was asked, and when it had answered: a value is one of a moment between.
struct Taken {
    Moment asked = {}, answered = {};
};
inline Moment middle(const Taken& taken) {
    return taken.asked + (taken.answered - taken.asked) / 2;
}

struct Reply {
    std::optional<Unknown> missing = {};  // why there is none
    int resp = 0;                         // of one that was refused
    std::vector<std::uint8_t> bytes = {};
    Taken taken = {};
};

// What a query has brought, without its times.
Reply replyOf(const InfoMsgHandler& query, Bytes bytes);

class Reading {
  public:
    explicit Reading(const Place& place) : place_(place) {}

    const Place& place() const { return place_; }
    bool absent() const;  // the driver says that there is no such service

    Moment begun() const { return begun_; }
    Taken taken(const Group& group) const;  // of its counters; only if something is known of it

    // Why nothing of a group is known; nothing: something is.
    std::optional<Unknown> missing(const Group& group) const;
    std::size_t rows(const Group& group) const;  // of a table
    // What the row of a table is known again by, as a text; and a row with a key: the one where it `stood`,
    // or else the first. Nothing: no row has it, or the table is not known.
    std::string key(const Group& group, std::size_t row) const;
    std::optional<std::size_t> find(const Group& group, std::string_view key, std::size_t stood = 0) const;
    // `row` is that of a table, below rows().
    Value value(const Group& group, const Metric& metric, std::size_t row = 0) const;

    // For the functions of the table: the bytes of a reply, none when it is missing, and a value of a virtual
    // circuit of the adapter.
    Bytes bytes(QueryId query) const;
    template <class Count> Value circuit(std::uint16_t vci, Count count) const {
        if (const auto why = missing(QueryId::vcTable)) return *why;
        for (const VcRowView row : TableView<VcRowView>(bytes(QueryId::vcTable), layout::vcRow::size))
            if (row.vci() == vci) return (row.*count)();
        return Unknown::noCircuit;
    }

    std::optional<Unknown> missing(QueryId query) const;

  private:
    friend class Reader;

    Place place_;
    Moment begun_ = {};
    std::map<QueryId, std::shared_ptr<const Reply>> replies_;
};

// Asks the driver. A reader is for one reading of whatever places: what several of them need is asked once,
// and after the first request without an answer nothing more is asked.
class Reader {
  public:
    using Clock = std::function<Moment()>;

    // The channel outlives this object.
    explicit Reader(DriverChannel& channel, Clock clock = std::chrono::steady_clock::now)
        : channel_(channel), answers_(channel), clock_(std::move(clock)) {}

    // With `wanted` only those groups are asked for, and the state of a service that can be absent; the
    // others are Unknown::notAsked.
    using Wanted = std::function<bool(const Group&)>;
    Reading read(const Place& place, const Wanted& wanted = {});

    // A reply that is there already, and is not asked for again. The whole table of virtual circuits, given
    // for the adapter, serves all its services; one that is given for a service serves that alone.
    void give(const Place& place, QueryId query, std::shared_ptr<const Reply> reply);

    // The driver has been found silent before: nothing is asked.
    void stop() { stopped_ = true; }

    // What the driver owes, in the order in which it was asked.
    struct Debt {
        Place place;
        Unknown why;
        int resp;
    };
    const std::vector<Debt>& owed() const { return owed_; }

  private:
    void ask(Reading& reading, QueryId query);
    std::shared_ptr<const Reply> request(const Place& place, QueryId query);
    Reply replyTo(const Place& place, QueryId query);

    DriverChannel& channel_;
    AnswerWatch answers_;
    Clock clock_;
    bool stopped_ = false;
    struct Given {
        Place place;
        QueryId query;
        std::shared_ptr<const Reply> reply;
    };
    std::shared_ptr<const Reply> given(const Place& place, QueryId query) const;

    std::vector<Given> given_;
    std::map<int, std::shared_ptr<const Reply>> circuits_;  // by adapter
    std::vector<Debt> owed_;
};

}  // namespace metrics
