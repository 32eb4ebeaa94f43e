// How values of replies become the texts of statistics fields and cells. A value is a row of a table: either
// a text made from a field of the reply, or a counter, which is shown as its growth since the last Clear, or
// as its rate. A counter is read as the named value says, or by a function where each row has a name of its
// own for it. The rows of a table are sorted by the numbers of counters and by texts, unless a text comes
// with a key.
//
//     {.text = shown<&LecStatsView::mtuClass, MtuTypeToString>}
//     {.text = shown<&LecRowView::vci, vciText>, .key = byNumber<&LecRowView::vci>}
//     {.counter = "txPackets"}
//     {.counter = "TxPackets", .read = [](const LesBusRow& row) { return row.circuit.tx(); }}
#pragma once

#include "driver/views.h"
#include "metrics/rates.h"
#include "metrics/subject.h"
#include "toolkit/table/sortkey.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <fmt/format.h>
#include <functional>
#include <string>
#include <string_view>

// A short text without an allocation, since a refresh makes one for every cell of a table. Longer text is
// cut.
class StatsText {
  public:
    StatsText(std::string_view text) : length_(std::min(text.size(), chars_.size())) {
        std::copy_n(text.data(), length_, chars_.begin());
    }

    template <class... Args>
    static StatsText of(fmt::format_string<const Args&...> format, const Args&... args) {
        StatsText text{{}};
        const auto end = fmt::format_to_n(text.chars_.data(), text.chars_.size(), format, args...);
        text.length_ = static_cast<std::size_t>(end.out - text.chars_.data());
        return text;
    }

    operator std::string_view() const { return {chars_.data(), length_}; }

  private:
    std::array<char, 64> chars_;
    std::size_t length_;
};

template <class View> struct StatsValue {
    StatsText (*text)(const View&) = nullptr;
    zSortKey (*key)(const View&) = nullptr;
    const char* counter = nullptr;  // name of a named value, or its end
    std::uint32_t (*read)(const View&) = nullptr;
    bool withSign = false;  // of a counter: as a signed number
};

// The text of a view's field. `field` is a member or a function of the view, `format` turns its value into
// text.
template <auto field, auto format = std::identity{}, class View> StatsText shown(const View& reply) {
    return StatsText(std::invoke(format, std::invoke(field, reply)));
}

template <auto field, class View> std::uint32_t counted(const View& reply) {
    return std::invoke(field, reply);
}

// The number of a counter; `metric` is the named value, where it is read from there.
template <class View>
std::uint32_t countIn(const StatsValue<View>& value, const metrics::Metric* metric, const View& reply) {
    if constexpr (requires { reply.bytes(); })
        if (!value.read) return std::get<std::uint32_t>(metrics::valueIn(*metric, reply.bytes()));
    return value.read(reply);
}

template <auto field, class View> zSortKey byNumber(const View& reply) {
    return zNumberKey(std::invoke(field, reply));
}
template <auto field, class View> zSortKey byBytes(const View& reply) {
    return zBytesKey(std::invoke(field, reply).bytes());
}

// What a counter shows.
template <class View>
std::int64_t growthOf(const StatsValue<View>& value, std::uint32_t count, std::uint32_t baseline) {
    const std::uint32_t growth = count - baseline;
    return value.withSign ? std::int64_t{static_cast<std::int32_t>(growth)} : std::int64_t{growth};
}

// Of a text.
template <class View> zSortKey keyOf(const StatsValue<View>& value, const View& reply) {
    return value.key ? value.key(reply) : zTextKey(value.text(reply));
}

// The text of a value. With `clear` the counter's current value becomes its baseline first.
template <class View>
StatsText textOf(const StatsValue<View>& value, const metrics::Metric* metric, const View& reply,
                 std::uint32_t& baseline, bool clear) {
    if (!value.counter) return value.text(reply);
    const std::uint32_t now = countIn(value, metric, reply);
    if (clear) baseline = now;
    return StatsText::of("{}", growthOf(value, now, baseline));
}

// ---- formatters ----

// Per second, with three digits at least: "0.25", "17.3", "353208"; of none "0".
inline StatsText rateText(const metrics::Rate& rate) {
    const double* number = std::get_if<double>(&rate);
    if (!number) return StatsText("unknown");
    const int digits = *number == 0 || *number >= 99.95 ? 0 : *number >= 9.995 ? 1 : 2;
    return StatsText::of("{:.{}f}", *number, digits);
}

// What the label of a counter says while its rate is shown: "Received Packets/s" of "Received Packets:",
// which takes no more room.
inline std::string perSecond(std::string_view label) {
    return fmt::format("{}/s", label.substr(0, label.find_last_not_of(':') + 1));
}

// "Rx Dropped Pkts/s", for where "Rx Dropped Packets/s" has no room.
inline std::string shortened(std::string label) {
    constexpr std::string_view word = "Packets";
    if (const auto found = label.find(word); found != label.npos) label.replace(found, word.size(), "Pkts");
    return label;
}

// "  0/  32": the VPI is always 0.
inline StatsText vciText(int vci) {
    return StatsText::of("  0/{:4}", vci);
}

// The halves of a view's address. Of a connection it is the remote address, which PVCs do not have.
template <class View> StatsText prefixText(const View& reply) {
    return StatsText(reply.address().GetFNetworkPrefix());
}
template <class View> StatsText esiText(const View& reply) {
    return StatsText(reply.address().GetFESISelector());
}
template <class Row> StatsText remotePrefixText(const Row& row) {
    return row.switched() ? prefixText(row) : StatsText("   PVC Connection                     ");
}
template <class Row> StatsText remoteEsiText(const Row& row) {
    return row.switched() ? esiText(row) : StatsText("   PVC Connection   ");
}

// Their keys. What has no address comes last.
template <class Row> zSortKey prefixKey(const Row& row) {
    const auto bytes = row.addressBytes();
    return zBytesKey(std::span(bytes).template first<atmAddress::prefixDigits / 2>());
}
template <class Row> zSortKey esiKey(const Row& row) {
    const auto bytes = row.addressBytes();
    return zBytesKey(std::span(bytes).template last<atmAddress::esiSelectorDigits / 2>());
}
template <class Row> zSortKey remotePrefixKey(const Row& row) {
    return row.switched() ? prefixKey(row) : zSortKey();
}
template <class Row> zSortKey remoteEsiKey(const Row& row) {
    return row.switched() ? esiKey(row) : zSortKey();
}
