#include "metrics/reading.h"

#include "driver/dai_io.h"
#include "metrics/subject.h"

#include <algorithm>
#include <cassert>

namespace metrics {

namespace {

// Any query, by its row in the table of queries.
class AnyQuery : public InfoMsgHandler {
  public:
    AnyQuery(DriverChannel& channel, const Place& place, QueryId id)
        : InfoMsgHandler(channel, initialHeader(id, static_cast<std::uint8_t>(place.adapter))),
          query_(queryOf(id)) {
        setUnit(static_cast<std::uint8_t>(id == QueryId::vcTable ? 0 : place.instance));
    }

    // A null address when the request failed, and for a table without rows.
    Bytes ask() { return query_.chunkRows ? allRows(query_) : reply(query_); }

  private:
    const Query& query_;
};

}  // namespace

Reply replyOf(const InfoMsgHandler& query, Bytes bytes) {
    const int resp = query.header().Resp;
    if (!query.answered()) return {.missing = Unknown::silent};
    if (query.result() != 0)
        return {.missing = query.decided() ? Unknown::refused : Unknown::incomplete, .resp = resp};
    if (!query.whole()) return {.missing = Unknown::incomplete};
    return {.bytes = {bytes.begin(), bytes.end()}};
}

std::optional<Unknown> Reading::missing(QueryId query) const {
    const auto found = replies_.find(query);
    if (found != replies_.end()) return found->second->missing;
    const QueryId first = groupsOf(place_.service).front().query;
    if (query == first || !canBeAbsent(place_.service)) return Unknown::notAsked;
    // Asked only of a service that is there.
    return absent() ? Unknown::absent : missing(first).value_or(Unknown::notAsked);
}

std::optional<Unknown> Reading::missing(const Group& group) const {
    return missing(group.query);
}

bool Reading::absent() const {
    const Group& first = groupsOf(place_.service).front();
    if (!canBeAbsent(place_.service) || missing(first.query)) return false;
    return std::get<State>(value(first, first.metrics.front())).code == 0;
}

Taken Reading::taken(const Group& group) const {
    return replies_.at(group.circuits ? QueryId::vcTable : group.query)->taken;
}

std::size_t Reading::rows(const Group& group) const {
    return bytes(group.query).size() / queryOf(group.query).size;
}

std::string Reading::key(const Group& group, std::size_t row) const {
    const std::size_t size = queryOf(group.query).size;
    return keyIn(group, bytes(group.query).subspan(row * size, size));
}

std::optional<std::size_t> Reading::find(const Group& group, std::string_view key, std::size_t stood) const {
    if (missing(group)) return {};
    const std::size_t all = rows(group);
    if (stood < all && this->key(group, stood) == key) return stood;
    for (std::size_t row = 0; row < all; ++row)
        if (this->key(group, row) == key) return row;
    return {};
}

Value Reading::value(const Group& group, const Metric& metric, std::size_t row) const {
    if (const auto why = missing(group.query)) return *why;
    assert(!group.isTable() || row < rows(group));
    const Bytes all = bytes(group.query);
    const std::size_t size = queryOf(group.query).size;
    return metric.read(*this, group.isTable() ? all.subspan(row * size, size) : all);
}

Bytes Reading::bytes(QueryId query) const {
    const auto found = replies_.find(query);
    return found != replies_.end() ? Bytes(found->second->bytes) : Bytes();
}

Reading Reader::read(const Place& place, const Wanted& wanted) {
    Reading reading(place);
    reading.begun_ = clock_();
    const Group& state = groupsOf(place.service).front();
    for (const Group& group : groupsOf(place.service)) {
        const bool needed = &group == &state && canBeAbsent(place.service);
        if (wanted && !needed && !wanted(group)) continue;
        ask(reading, group.query);
        // Without a state nobody knows whether the service is there.
        if (canBeAbsent(place.service) && (reading.absent() || reading.missing(state))) break;
        if (group.circuits && group.circuits(reading)) ask(reading, QueryId::vcTable);
    }
    return reading;
}

void Reader::ask(Reading& reading, QueryId query) {
    if (reading.replies_.contains(query)) return;
    const Place& place = reading.place();
    auto& reply = reading.replies_[query] = given(place, query);
    if (reply) return;
    if (query != QueryId::vcTable) {
        reply = request(place, query);
        return;
    }
    auto& circuits = circuits_[place.adapter];  // a table of the adapter, whatever the service
    if (!circuits) circuits = given({.adapter = place.adapter}, query);
    if (!circuits) circuits = request(place, query);
    reply = circuits;
}

void Reader::give(const Place& place, QueryId query, std::shared_ptr<const Reply> reply) {
    given_.push_back({place, query, std::move(reply)});
}

std::shared_ptr<const Reply> Reader::given(const Place& place, QueryId query) const {
    const auto found = std::ranges::find_if(
        given_, [&](const Given& given) { return given.place == place && given.query == query; });
    return found != given_.end() ? found->reply : nullptr;
}

std::shared_ptr<const Reply> Reader::request(const Place& place, QueryId id) {
    const auto reply = std::make_shared<Reply>();
    if (stopped_ || answers_.missed()) {
        reply->missing = Unknown::notAsked;
        return reply;
    }
    const Moment asked = clock_();
    *reply = replyTo(place, id);
    reply->taken = {asked, clock_()};
    if (reply->missing) owed_.push_back({place, *reply->missing, reply->resp});
    return reply;
}

Reply Reader::replyTo(const Place& place, QueryId id) {
    if (id == QueryId::boardMacAddress) {
        aalInfo query(channel_, static_cast<std::uint8_t>(place.adapter));
        const auto board = static_cast<std::uint16_t>(place.adapter + 1);
        return replyOf(query, query.GetBoardMacAddress(board).bytes());
    }
    AnyQuery query(channel_, place, id);
    const Bytes bytes = query.ask();
    return replyOf(query, bytes);
}

}  // namespace metrics
