// The queries of the driver's live state: one class per driver service.
//
// A query object is made once by the page that uses it, on a channel that is open, for one adapter (Link); it
// keeps its buffer and its header between queries. Link, Unit, RowM and NRow stay as they are until an
// overload or a reply sets them. Every Get... sends its request and waits; it gives a view (views.h) that is
// false when the request failed and otherwise valid until the next request on the same object; a table stays
// valid until the object has fetched another one, whatever fails meanwhile. A query of several requests ends
// with the first that gets no answer. Nothing is shown to the user here;
// requests and failures are traced on the debug log.
//
// Replies are not trusted: a reply is never read beyond what was asked for, bytes that the driver did not
// write read as zero, and a table has at most as many rows as were asked for.
#pragma once

#include "driver/queries.h"
#include "driver/reqparam.h"
#include "driver/views.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

class InfoMsgHandler : public reqParam {
  public:
    // Sizes the message for a reply of dataSize bytes, which are zeroed; the request carries its header
    // alone.
    virtual void prepareMsg(std::size_t dataSize);

    // The table that was fetched last is, byte by byte, the one that was fetched before it. What failed in
    // between does not count.
    bool sameTable() const { return same_; }

    // Whether the last query of a reply or of a table has got all that it asked for: no request of it was
    // refused, and no answer was shorter than the reply, or than the rows that it claims to hold.
    bool whole() const { return whole_; }

    // Asks for the number of rows of a table (Type 3 or 5). After a failed request (see result()) this is 0
    // unless the driver wrote NRow.
    virtual std::uint16_t GetNumRows(int tableType);

    void setUnit(std::uint8_t unit) { header().Unit = unit; }

  protected:
    using Bytes = std::span<const std::uint8_t>;

    explicit InfoMsgHandler(DriverChannel& channel, const req_param_t& header) : reqParam(channel, header) {}

    // The header that a query object starts with.
    static req_param_t initialHeader(QueryId id, std::uint8_t link, std::uint16_t type = 1);

    void addressTo(std::uint8_t link, std::uint8_t unit);
    void markRows(std::uint16_t rowMarker, std::uint16_t rows);

    // A query with one reply.
    template <typename View> View ask(QueryId id) { return View(told(id, true, reply(queryOf(id)))); }

    // header().NRow rows of a table, from row header().RowM on; more than one request can carry are fetched
    // in chunks. The whole table: the same, after its row count was asked for; false when that is 0 or
    // failed.
    template <typename Row> TableView<Row> table(QueryId id) {
        return {told(id, false, rows(queryOf(id))), queryOf(id).size};
    }
    template <typename Row> TableView<Row> entireTable(QueryId id) {
        return {told(id, true, allRows(queryOf(id))), queryOf(id).size};
    }

    // The bytes of the reply, empty with a null address when the request failed.
    Bytes reply(const Query& query);
    Bytes rows(const Query& query);
    Bytes allRows(const Query& query);

    // Traces the query, sends the message and gives the reply area, or a null one.
    Bytes send(const char* prefix, const Query& query);

    // The data bytes that the driver may write: as many as prepareMsg was asked for.
    std::span<std::uint8_t> area() { return data().first(areaSize_); }
    void setArea(std::size_t size);

    // The rows of the last table that was fetched, null after anything else.
    Bytes fetched() const { return fetched_; }

  private:
    // Tells whoever listens to the channel.
    Bytes told(QueryId id, bool entire, Bytes bytes) const {
        if (channel().onQuery) channel().onQuery({*this, id, entire, bytes});
        return bytes;
    }
    Bytes chunks(const Query& query, std::uint16_t wanted);

    std::size_t areaSize_ = 0;
    Bytes fetched_;
    bool same_ = false;
    bool whole_ = true;
    std::vector<std::uint8_t> table_;     // the last table
    std::vector<std::uint8_t> assembly_;  // one that comes in chunks, until it is whole; the memory is kept
};

// The operations of a service's connection table.
template <typename Row, QueryId tableId> class TableInfo : public InfoMsgHandler {
  public:
    using Table = TableView<Row>;

    std::uint16_t GetNRows() { return GetNumRows(queryOf(tableId).countType); }
    std::uint16_t GetNRows(std::uint8_t link, std::uint8_t unit) { return addressTo(link, unit), GetNRows(); }

    Table GetTable() { return table<Row>(tableId); }
    Table GetTable(std::uint16_t rowMarker, std::uint16_t rows) {
        return markRows(rowMarker, rows), GetTable();
    }
    Table GetTable(std::uint8_t link, std::uint8_t unit, std::uint16_t rowMarker, std::uint16_t rows) {
        return addressTo(link, unit), GetTable(rowMarker, rows);
    }

    Table GetEntireTable() { return entireTable<Row>(tableId); }
    Table GetEntireTable(std::uint8_t link, std::uint8_t unit) {
        return addressTo(link, unit), GetEntireTable();
    }

  protected:
    using InfoMsgHandler::InfoMsgHandler;
};

class lecInfo : public TableInfo<LecRowView, QueryId::lecTable> {
  public:
    lecInfo(DriverChannel& channel, std::uint8_t link);

    LecStateView GetState() { return ask<LecStateView>(QueryId::lecState); }
    LecStateView GetState(std::uint8_t link, std::uint8_t unit) { return addressTo(link, unit), GetState(); }
    LecStatsView GetStats() { return ask<LecStatsView>(QueryId::lecStats); }
    LecStatsView GetStats(std::uint8_t link, std::uint8_t unit) { return addressTo(link, unit), GetStats(); }
};

class lesInfo : public TableInfo<LesRowView, QueryId::lesTable> {
  public:
    lesInfo(DriverChannel& channel, std::uint8_t link);

    LesStateView GetState() { return ask<LesStateView>(QueryId::lesState); }
    LesStateView GetState(std::uint8_t link, std::uint8_t unit) { return addressTo(link, unit), GetState(); }
    LesStatsView GetStats() { return ask<LesStatsView>(QueryId::lesStats); }
    LesStatsView GetStats(std::uint8_t link, std::uint8_t unit) { return addressTo(link, unit), GetStats(); }
};

class lecsInfo : public TableInfo<LecsRowView, QueryId::lecsTable> {
  public:
    lecsInfo(DriverChannel& channel, std::uint8_t link);

    LecsStateView GetState() { return ask<LecsStateView>(QueryId::lecsState); }
    LecsStateView GetState(std::uint8_t link, std::uint8_t unit) { return addressTo(link, unit), GetState(); }
    LecsStatsView GetStats() { return ask<LecsStatsView>(QueryId::lecsStats); }
    LecsStatsView GetStats(std::uint8_t link, std::uint8_t unit) { return addressTo(link, unit), GetStats(); }
};

class vccInfo : public TableInfo<VcRowView, QueryId::vcTable> {
  public:
    vccInfo(DriverChannel& channel, std::uint8_t link);

    // The first row with this VCI of the table that this object fetched last; false when there is none, or no
    // table. Sends nothing.
    VcRowView GetVciEntry(std::uint16_t vci) const;
};

class ip1577Info : public TableInfo<IpRowView, QueryId::ipTable> {
  public:
    using PvcTable = TableView<PvcRowView>;

    ip1577Info(DriverChannel& channel, std::uint8_t link);

    IpStateView GetState() { return ask<IpStateView>(QueryId::ipState); }
    IpStateView GetState(std::uint8_t link, std::uint8_t unit) { return addressTo(link, unit), GetState(); }
    IpStatsView GetStats() { return ask<IpStatsView>(QueryId::ipStats); }
    IpStatsView GetStats(std::uint8_t link, std::uint8_t unit) { return addressTo(link, unit), GetStats(); }

    std::uint16_t GetPvcNRows() { return GetNumRows(queryOf(QueryId::ipPvcTable).countType); }
    std::uint16_t GetPvcNRows(std::uint8_t link, std::uint8_t unit) {
        return addressTo(link, unit), GetPvcNRows();
    }

    PvcTable GetPvcTable() { return table<PvcRowView>(QueryId::ipPvcTable); }
    PvcTable GetPvcTable(std::uint16_t rowMarker, std::uint16_t rows) {
        return markRows(rowMarker, rows), GetPvcTable();
    }
    PvcTable GetPvcTable(std::uint8_t link, std::uint8_t unit, std::uint16_t rowMarker, std::uint16_t rows) {
        return addressTo(link, unit), GetPvcTable(rowMarker, rows);
    }

    PvcTable GetEntirePvcTable() { return entireTable<PvcRowView>(QueryId::ipPvcTable); }
    PvcTable GetEntirePvcTable(std::uint8_t link, std::uint8_t unit) {
        return addressTo(link, unit), GetEntirePvcTable();
    }
};

// UNI signalling. Its buffer is made once for its only reply and never grows.
class sigInfo : public InfoMsgHandler {
  public:
    sigInfo(DriverChannel& channel, std::uint8_t link);

    void prepareMsg(std::size_t dataSize) override;

    LinkStateView GetLinkState() { return ask<LinkStateView>(QueryId::linkState); }
    LinkStateView GetLinkState(std::uint8_t link, std::uint8_t unit) {
        return addressTo(link, unit), GetLinkState();
    }
};

// Adapters, the AAL5 driver and the physical layer.
class aalInfo : public InfoMsgHandler {
  public:
    aalInfo(DriverChannel& channel, std::uint8_t link);

    BoardStateView GetBoardState() { return ask<BoardStateView>(QueryId::boardState); }
    BoardStateView GetBoardState(std::uint8_t link, std::uint8_t unit) {
        return addressTo(link, unit), GetBoardState();
    }

    // Boards count from 1; the low byte of the number travels in the first data byte.
    BoardMacView GetBoardMacAddress(std::uint16_t board);

    AalStatsView GetAalStats() { return ask<AalStatsView>(QueryId::aalStats); }
    AalStatsView GetAalStats(std::uint8_t link, std::uint8_t unit) {
        return addressTo(link, unit), GetAalStats();
    }
    SuniStatsView GetSuniStats() { return ask<SuniStatsView>(QueryId::suniStats); }
    SuniStatsView GetSuniStats(std::uint8_t link, std::uint8_t unit) {
        return addressTo(link, unit), GetSuniStats();
    }
    PackageRevView GetPackageRev() { return ask<PackageRevView>(QueryId::packageRev); }
    PackageRevView GetPackageRev(std::uint8_t link, std::uint8_t unit) {
        return addressTo(link, unit), GetPackageRev();
    }
};
