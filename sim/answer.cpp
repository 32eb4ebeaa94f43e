#include "sim/answer.h"

#include "sim/peers.h"

#include <algorithm>
#include <cerrno>

namespace sim {

namespace {

bool knownPrim(std::uint16_t prim) {
    return std::any_of(requests().begin(), requests().end(),
                       [&](const Request& r) { return r.prim == prim; });
}

const Request* find(const Header& header) {
    for (const Request& r : requests())
        if (r.prim == header.prim && (r.type == header.type || r.type == anyType)) return &r;
    return nullptr;
}

bool sizeFits(const Asked& asked, const Header& header) {
    if (asked.change) return header.size == asked.change->size && header.szIO == asked.change->szIO;
    const Request& request = *asked.request;
    if (header.szIO < headerSize || header.szIO > header.size) return false;
    const std::size_t data = header.size - headerSize;
    switch (request.shape) {
    case Shape::Single:
        return data == request.size;
    case Shape::Count:
        return data == 0;
    case Shape::Table:
        return data >= request.size;
    case Shape::Change:
        break;
    }
    return true;
}

std::vector<std::uint8_t> reply(Header header, Resp resp, std::size_t data) {
    std::vector<std::uint8_t> message(headerSize + data, unnamedByte);
    header.resp = static_cast<std::uint16_t>(resp);
    writeHeader(header, message);
    return message;
}

std::vector<std::uint8_t> tableReply(const State& state, const Request& request, Header header) {
    if (header.rowM == 0) return reply(header, Resp::WrongRow, 0);
    const int adapter = header.link, unit = request.units > 1 ? header.unit : 0;
    const Rows rows(state, request.id, adapter, unit);
    const std::size_t first = header.rowM - 1u;
    const std::size_t room = (header.size - headerSize) / request.size;
    const std::size_t left = first < rows.count() ? rows.count() - first : 0;
    const std::size_t count = std::min({left, room, std::size_t{header.nRow}});
    // After the 65,535th row the marker is 0, which is no row.
    header.rowM = static_cast<std::uint16_t>(header.rowM + count);
    header.nRow = static_cast<std::uint16_t>(count);
    std::vector<std::uint8_t> message = reply(header, Resp::Ok, count * request.size);
    for (std::size_t i = 0; i < count; ++i) {
        const Peer peer = rows.row(first + i);
        packFields(request, {state, adapter, unit, &peer}, static_cast<int>(first + i + 1),
                   Bytes(message).subspan(headerSize + i * request.size, request.size));
    }
    return message;
}

}  // namespace

void packFields(const Request& request, const Subject& subject, int row, Bytes out) {
    for (std::size_t i = 0; i < request.fields.size(); ++i) {
        const Field& field = request.fields[i];
        const Bytes place = out.subspan(field.offset, field.width);
        if (!subject.state.forced.empty()) {
            const auto found = subject.state.forced.find({request.id, subject.adapter, subject.unit, row, i});
            if (found != subject.state.forced.end()) {
                putBytes(place, found->second);
                continue;
            }
        }
        field.source(subject, field.arg, place);
    }
}

Asked identify(ConstBytes message) {
    Asked asked;
    if (message.size() < headerSize) return asked;
    const Header header = readHeader(message);
    asked.request = find(header);
    if (asked.request && asked.request->shape == Shape::Change)
        asked.change = changeRequest(asked.request->id, header.type);
    return asked;
}

Answer answer(State& state, const Caller& caller, const Asked& asked, ConstBytes message) {
    Answer result;
    if (message.size() < headerSize || readHeader(message).size != message.size()) {
        result.error = EINVAL;
        return result;
    }
    const Header header = readHeader(message);
    const auto refuse = [&](Resp resp) {
        result.message = reply(header, resp, 0);
        return result;
    };
    const Request* request = asked.request;
    if (!request) return refuse(knownPrim(header.prim) ? Resp::UnknownType : Resp::UnknownPrim);
    if ((request->access == Access::Writer && !caller.writer) ||
        (request->access == Access::Privileged && !caller.privileged)) {
        result.error = EACCES;
        return result;
    }
    if (request->shape == Shape::Change && !asked.change) return refuse(Resp::UnknownType);
    if (request->units > 0 && !state.present(header.link)) return refuse(Resp::NoAdapter);
    if (header.unit >= request->wireUnits) return refuse(Resp::NoUnit);
    if (!sizeFits(asked, header)) return refuse(Resp::WrongSize);

    switch (request->shape) {
    case Shape::Change:
        return refuse(
            asked.change->run({state, header.link, header.unit, message.subspan(asked.change->header)}));
    case Shape::Table:
        result.message = tableReply(state, *request, header);
        return result;
    case Shape::Count: {
        // The row count stands before its table.
        const auto rows = static_cast<Rid>(static_cast<int>(request->id) + 1);
        Header counted = header;
        counted.nRow = static_cast<std::uint16_t>(
            Rows(state, rows, header.link, request->units > 1 ? header.unit : 0).count());
        result.message = reply(counted, Resp::Ok, 0);
        return result;
    }
    case Shape::Single:
        break;
    }
    int adapter = request->units > 0 ? header.link : 0;
    if (request->id == Rid::BoardMac) {
        // The first data byte asks for a board, counted from 1, and stays as it came.
        adapter = message[headerSize] - 1;
        if (!state.present(adapter)) return refuse(Resp::NoAdapter);
    }
    result.message = reply(header, Resp::Ok, request->size);
    const Bytes data = Bytes(result.message).subspan(headerSize);
    if (request->id == Rid::BoardMac) data[0] = message[headerSize];
    packFields(*request, {state, adapter, request->units > 1 ? header.unit : 0, nullptr}, 0, data);
    return result;
}

}  // namespace sim
