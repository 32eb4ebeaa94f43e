#include "driver/dai_io.h"

#include "platform/debuglog.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace {

constexpr std::size_t largestMessage = std::numeric_limits<std::uint16_t>::max();

}  // namespace

req_param_t InfoMsgHandler::initialHeader(QueryId id, std::uint8_t link, std::uint16_t type) {
    return {.Prim = queryOf(id).prim,
            .Type = type,
            .Link = link,
            .Unit = 0,
            .Size = req_param_t::wireSize,
            .SzIO = req_param_t::wireSize,
            .RowM = 1,
            .NRow = 0,
            .Resp = respUnanswered};
}

void InfoMsgHandler::addressTo(std::uint8_t link, std::uint8_t unit) {
    header().Link = link;
    header().Unit = unit;
}

void InfoMsgHandler::markRows(std::uint16_t rowMarker, std::uint16_t rows) {
    header().RowM = rowMarker;
    header().NRow = rows;
}

void InfoMsgHandler::prepareMsg(std::size_t dataSize) {
    SetupMsg(dataSize + headerLength());
    setArea(dataSize);
}

void InfoMsgHandler::setArea(std::size_t size) {
    fetched_ = {};
    areaSize_ = size;
    whole_ = true;
    std::ranges::fill(area(), std::uint8_t{0});
    header().Size = static_cast<std::uint16_t>(size + headerLength());
    header().SzIO = static_cast<std::uint16_t>(headerLength());
}

std::uint16_t InfoMsgHandler::GetNumRows(int tableType) {
    header().Type = static_cast<std::uint16_t>(tableType);
    header().NRow = 0;
    tvlog.line("GET_NROWS");
    prepareMsg(0);
    daiRequest();
    return header().NRow;
}

InfoMsgHandler::Bytes InfoMsgHandler::send(const char* prefix, const Query& query) {
    tvlog.line(prefix, query.trace);
    daiRequest();
    const std::size_t claimed =
        query.chunkRows ? std::min(std::size_t{header().NRow} * query.size, areaSize_) : areaSize_;
    whole_ = whole_ && result() == 0 && channel().received() >= headerLength() + claimed;
    return result() == 0 ? Bytes(area()) : Bytes();
}

InfoMsgHandler::Bytes InfoMsgHandler::reply(const Query& query) {
    header().Type = query.type;
    prepareMsg(query.size);
    return send("", query);
}

InfoMsgHandler::Bytes InfoMsgHandler::rows(const Query& query) {
    const std::uint16_t wanted = header().NRow;
    header().Type = query.type;
    if (wanted > query.chunkRows) return chunks(query, wanted);

    prepareMsg(std::size_t{wanted} * query.size);
    const Bytes bytes = send("", query);
    if (!bytes.data()) return {};
    header().NRow = std::min(header().NRow, wanted);
    const Bytes kept = bytes.first(std::size_t{header().NRow} * query.size);
    same_ = std::ranges::equal(kept, table_);
    table_.reserve(query.size);  // a table without rows is a table, too
    if (!same_) table_.assign(kept.begin(), kept.end());
    return fetched_ = table_;
}

// Each chunk is requested with RowM and NRow as the previous reply left them, since the driver advances them.
// The number of requests depends on the row count alone, not on what the driver delivers. The rows of a
// failed chunk are missing; if the last chunk fails, the table fails.
InfoMsgHandler::Bytes InfoMsgHandler::chunks(const Query& query, std::uint16_t wanted) {
    const std::size_t size = std::size_t{wanted} * query.size;
    assembly_.clear();
    assembly_.reserve(size);
    header().NRow = query.chunkRows;
    prepareMsg(std::size_t{query.chunkRows} * query.size);
    for (int remaining = wanted; remaining > 0; remaining -= query.chunkRows) {
        if (remaining < wanted) std::ranges::fill(area(), std::uint8_t{0});
        const Bytes chunk = send("Incr ", query);
        if (!answered())
            return {};  // waiting for each of thousands of chunks would block the window for hours
        if (!chunk.data()) continue;
        const std::size_t delivered = std::min(std::size_t{header().NRow} * query.size, chunk.size());
        const Bytes kept = chunk.first(std::min(delivered, size - assembly_.size()));
        assembly_.insert(assembly_.end(), kept.begin(), kept.end());
    }
    if (result() != 0) return {};

    same_ = table_ == assembly_;
    if (!same_) std::swap(table_, assembly_);
    // As if it had come at once.
    header().Size = static_cast<std::uint16_t>(std::min(table_.size() + headerLength(), largestMessage));
    header().NRow = static_cast<std::uint16_t>(table_.size() / query.size);
    return fetched_ = table_;
}

InfoMsgHandler::Bytes InfoMsgHandler::allRows(const Query& query) {
    header().RowM = 1;
    const std::uint16_t count = GetNumRows(query.countType);
    if (result() != 0 || count == 0) return {};
    return rows(query);
}

lecInfo::lecInfo(DriverChannel& channel, std::uint8_t link)
    : TableInfo(channel, initialHeader(QueryId::lecTable, link)) {}

lesInfo::lesInfo(DriverChannel& channel, std::uint8_t link)
    : TableInfo(channel, initialHeader(QueryId::lesTable, link)) {}

lecsInfo::lecsInfo(DriverChannel& channel, std::uint8_t link)
    : TableInfo(channel, initialHeader(QueryId::lecsTable, link)) {}

vccInfo::vccInfo(DriverChannel& channel, std::uint8_t link)
    : TableInfo(channel, initialHeader(QueryId::vcTable, link, 2)) {}

VcRowView vccInfo::GetVciEntry(std::uint16_t vci) const {
    for (const VcRowView row : TableView<VcRowView>(fetched(), queryOf(QueryId::vcTable).size))
        if (row.vci() == vci) return row;
    return {};
}

ip1577Info::ip1577Info(DriverChannel& channel, std::uint8_t link)
    : TableInfo(channel, initialHeader(QueryId::ipTable, link)) {}

namespace {

req_param_t signallingHeader(req_param_t header) {
    header.Size = req_param_t::wireSize + layout::linkState::size;
    header.SzIO = 24;  // as in the driver's signalling messages; every query sets its own
    return header;
}

}  // namespace

sigInfo::sigInfo(DriverChannel& channel, std::uint8_t link)
    : InfoMsgHandler(channel, signallingHeader(initialHeader(QueryId::linkState, link))) {}

void sigInfo::prepareMsg(std::size_t dataSize) {
    setArea(std::min(dataSize, data().size()));
}

aalInfo::aalInfo(DriverChannel& channel, std::uint8_t link)
    : InfoMsgHandler(channel, initialHeader(QueryId::boardState, link)) {}

BoardMacView aalInfo::GetBoardMacAddress(std::uint16_t board) {
    const Query& query = queryOf(QueryId::boardMacAddress);
    header().Type = query.type;
    prepareMsg(query.size);
    area()[layout::boardMac::board.offset] = static_cast<std::uint8_t>(board);
    return BoardMacView(send("", query));
}
