#include "sim/requestlog.h"

#include "sim/resp.h"

#include <algorithm>
#include <cstring>
#include <fmt/format.h>

namespace sim {

namespace {

constexpr std::size_t keptInput = 128;  // the longest change request has 88

std::string outcome(int error, ConstBytes reply) {
    if (error) return fmt::format("errno {} ({})", error, std::strerror(error));
    if (reply.size() < headerSize) return "no reply";
    const Header header = readHeader(reply);
    if (header.resp == 0)
        return fmt::format("ok, {} bytes, RowM {} NRow {}", reply.size(), header.rowM, header.nRow);
    return fmt::format("Resp {} ({})", header.resp, respText(header.resp));
}

}  // namespace

void RequestLog::add(const State& state, int connection, std::string line, ConstBytes input) {
    Entry entry{++last_, {}, {}};
    entry.line = fmt::format("{} t={:.3f} c{} {}", entry.number, static_cast<double>(state.now()) / 1000,
                             connection, line);
    entry.input.assign(input.begin(),
                       input.begin() + static_cast<std::ptrdiff_t>(std::min(input.size(), keptInput)));
    entries_.push_back(std::move(entry));
    if (entries_.size() > capacity) entries_.pop_front();
}

void RequestLog::malformed(const State& state, int connection, ConstBytes packet) {
    add(state, connection, fmt::format("malformed packet of {} bytes -> hung up", packet.size()), packet);
}

void RequestLog::opened(const State& state, int connection, int flags, int error) {
    add(state, connection,
        fmt::format("open {} -> {}", flags ? "read-write" : "read-only", error ? outcome(error, {}) : "ok"),
        {});
}

void RequestLog::asked(const State& state, int connection, std::string_view request, ConstBytes message,
                       int error, ConstBytes reply, const std::string& damage) {
    std::string line(request.empty() ? "unknown" : request);
    ConstBytes input = message;
    if (message.size() >= headerSize) {
        const Header h = readHeader(message);
        line += fmt::format(" Prim {} Type {} Link {} Unit {} Size {} SzIO {} RowM {} NRow {}", h.prim,
                            h.type, h.link, h.unit, h.size, h.szIO, h.rowM, h.nRow);
        input = message.first(std::clamp<std::size_t>(h.szIO, headerSize, message.size()));
    }
    line += " -> " + outcome(error, reply);
    if (!damage.empty()) line += " [" + damage + "]";
    add(state, connection, std::move(line), input);
}

std::string RequestLog::text(std::size_t count, bool hex) const {
    std::string result;
    for (std::size_t i = entries_.size() - std::min(count, entries_.size()); i < entries_.size(); ++i) {
        result += entries_[i].line + "\n";
        if (hex && !entries_[i].input.empty())
            result += fmt::format("  {:02x}\n", fmt::join(entries_[i].input, " "));
    }
    return result;
}

}  // namespace sim
