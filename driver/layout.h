// The places of the fields in the driver's replies, and the reader for them. Offsets count from the first
// data byte of a reply, or from the first byte of a table row. Numbers are little-endian. Only the views
// (views.h) need this; pages read views.
#pragma once

#include "model/ui_types.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace layout {

// Places of fields, by type.
struct U8 {
    std::size_t offset;
};
struct U16 {
    std::size_t offset;
};
struct U32 {
    std::size_t offset;
};
struct Words {  // neighbouring 32-bit words that are shown as their sum
    std::size_t offset, count;
};
struct Mac {
    std::size_t offset;
};
struct Esi {  // ESI and selector
    std::size_t offset;
};
struct Atm {
    std::size_t offset;
};
struct Ip {
    std::size_t offset;
};
struct Text {  // ends at a NUL or with the field
    std::size_t offset, length;
};

constexpr std::size_t elanNameLength = 32;  // the longest name that LAN Emulation knows

namespace boardState {
constexpr std::size_t size = 6;
constexpr U16 count{0}, mask{2};
}  // namespace boardState

namespace boardMac {
constexpr std::size_t size = 7;
constexpr U8 board{0};  // input
constexpr Mac address{1};
}  // namespace boardMac

namespace packageRev {
constexpr std::size_t size = 32;
constexpr Text text{0, 32};
}  // namespace packageRev

namespace aalStats {
constexpr std::size_t size = 92;
constexpr U32 txCells{0}, rxCells{4}, txPackets{8}, rxPackets{12};
constexpr Words rxCellErrors{24, 4}, rxFrameErrors{40, 4};
constexpr U32 rxDropsA{68}, invalidVcis{72}, invalidVpis{76}, rxDropsB{80}, txDrops{88};
}  // namespace aalStats

namespace suniStats {
constexpr std::size_t size = 92;
constexpr U32 linkKind{0}, valid{4}, linkAlarm{8}, outOfFrame{12}, lossOfFrame{16}, lossOfSignal{20};
constexpr U32 farEndFailure{32}, alarmIndication{36}, lossOfPointer{48};
}  // namespace suniStats

namespace linkState {
constexpr std::size_t size = 60;
constexpr U8 ilmi{2}, saal{3}, signalling{4};
constexpr Atm address{9};
}  // namespace linkState

namespace vcRow {
constexpr std::size_t size = 20;
constexpr U16 vci{0};
constexpr U32 tx{12}, rx{16};
}  // namespace vcRow

namespace lecState {
constexpr std::size_t size = 16;
constexpr U32 state{0}, flag{12};
}  // namespace lecState

namespace lecStats {
constexpr std::size_t size = 940;
constexpr Atm address{0};
constexpr U8 elanType{20}, mtuClass{21};
constexpr Text elanName{28, elanNameLength};
constexpr Mac mac{61};
// The connections to LES and BUS: control direct, control distribute, multicast send, multicast forward.
constexpr Atm connectionAddress[] = {{76}, {800}, {824}, {844}};
constexpr U16 connectionVci[] = {{820}, {822}, {864}, {866}};
}  // namespace lecStats

namespace lecRow {
constexpr std::size_t size = 72;
constexpr Mac mac{0};
constexpr U16 kind{8}, vci{38};
constexpr Atm address{15};
constexpr U32 tx{48}, rx{52};
}  // namespace lecRow

namespace lesState {
constexpr std::size_t size = 12;
constexpr U32 state{0}, flag{8};
}  // namespace lesState

namespace lesStats {
constexpr std::size_t size = 116;
constexpr Atm address{0}, busAddress{32};
constexpr U8 elanType{20}, mtuClass{21};
constexpr Text elanName{80, elanNameLength};
}  // namespace lesStats

namespace lesRow {
constexpr std::size_t size = 64;
constexpr Mac mac{2};
constexpr Atm address{8};
constexpr U16 state{36}, controlVci{40}, multicastVci{52};
constexpr U32 controlTx{44}, controlRx{48}, multicastTx{56}, multicastRx{60};
}  // namespace lesRow

namespace lecsState {
constexpr std::size_t size = 8;
constexpr U32 state{0};
}  // namespace lecsState

namespace lecsStats {
constexpr std::size_t size = 48;
constexpr Atm address{0};
constexpr U8 elanType{20}, etherMtuClass{21}, tokenRingMtuClass{22};
constexpr U32 registered{24}, validRequests{28}, invalidRequests{32}, rejected{36}, made{40}, open{44};
}  // namespace lecsStats

namespace lecsRow {
constexpr std::size_t size = 9;
constexpr Esi client{0};
constexpr U8 les{7}, kind{8};
}  // namespace lecsRow

namespace ipState {
constexpr std::size_t size = 16;
constexpr U32 state{0};
}  // namespace ipState

namespace ipStats {
constexpr std::size_t size = 160;
constexpr Words tx{48, 2}, txDrops{68, 3}, rx{80, 2}, rxDrops{88, 9};
constexpr U32 rxMore{124};  // the third receive counter
}  // namespace ipStats

namespace ipRow {
constexpr std::size_t size = 56;
constexpr U16 state{0}, vci{12};
constexpr U32 kind{4}, tx{20}, rx{24};
constexpr Ip ip{30};
constexpr Atm address{34};
}  // namespace ipRow

namespace pvcRow {
constexpr std::size_t size = 16;
}  // namespace pvcRow

// Reads fields out of the bytes given. Bytes beyond them read as zero.
class Reader {
  public:
    Reader() = default;
    explicit Reader(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    std::uint8_t get(U8 f) const { return byte(f.offset); }
    std::uint16_t get(U16 f) const { return static_cast<std::uint16_t>(number(f.offset, 2)); }
    std::uint32_t get(U32 f) const { return number(f.offset, 4); }

    // Wraps at 32 bits, as the driver's counters do.
    std::uint32_t get(Words f) const {
        std::uint32_t sum = 0;
        for (std::size_t i = 0; i < f.count; ++i) sum += get(U32{f.offset + 4 * i});
        return sum;
    }

    macAddress get(Mac f) const { return macAddress(array<macAddress::Bytes>(f.offset)); }
    esiSelector get(Esi f) const { return esiSelector(array<esiSelector::Bytes>(f.offset)); }
    ipAddress get(Ip f) const { return ipAddress(array<ipAddress::Bytes>(f.offset)); }

    atmAddress get(Atm f) const {
        atmAddress address;
        address.fromHex(bytes(f));
        return address;
    }

    std::array<std::uint8_t, atmAddress::byteCount> bytes(Atm f) const {
        return array<std::array<std::uint8_t, atmAddress::byteCount>>(f.offset);
    }

    std::string_view get(Text f) const {
        if (f.offset >= bytes_.size()) return {};
        const auto field = bytes_.subspan(f.offset, std::min(f.length, bytes_.size() - f.offset));
        const auto end = std::find(field.begin(), field.end(), 0);
        return {reinterpret_cast<const char*>(field.data()), static_cast<std::size_t>(end - field.begin())};
    }

    std::span<const std::uint8_t> bytes() const { return bytes_; }

  private:
    std::uint8_t byte(std::size_t offset) const {
        return offset < bytes_.size() ? bytes_[offset] : std::uint8_t{0};
    }

    std::uint32_t number(std::size_t offset, std::size_t width) const {
        std::uint32_t value = 0;
        for (std::size_t i = width; i-- > 0;) value = (value << 8) | byte(offset + i);
        return value;
    }

    template <typename Array> Array array(std::size_t offset) const {
        Array bytes;
        for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = byte(offset + i);
        return bytes;
    }

    std::span<const std::uint8_t> bytes_;
};

}  // namespace layout
