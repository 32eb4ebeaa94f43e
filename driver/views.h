// What the driver's replies say, field by field, in host numbers and the model's address types.
//
// A query returns a view, which is false when the request failed. A view refers to the query object's buffer
// and is valid until the next request on that object; the values that it returns are copies. Counters are
// unsigned 32-bit and wrap, sums of counters too. Small codes (types, classes, states of table entries) come
// as the signed 16-bit numbers that the text tables of tvtypes.h take; the codes of states stand in
// model/statecodes.h.
#pragma once

#include "driver/layout.h"
#include "platform/index.h"

#include <cstdint>
#include <span>
#include <string>

class ReplyView {
  public:
    using AddressBytes = std::array<std::uint8_t, atmAddress::byteCount>;

    ReplyView() = default;
    explicit ReplyView(std::span<const std::uint8_t> bytes) : reader_(bytes) {}

    explicit operator bool() const { return reader_.bytes().data() != nullptr; }
    std::span<const std::uint8_t> bytes() const { return reader_.bytes(); }

  protected:
    template <typename Field> auto get(Field field) const { return reader_.get(field); }
    auto bytes(layout::Atm field) const { return reader_.bytes(field); }
    std::int16_t code(layout::U8 field) const { return static_cast<std::int16_t>(get(field)); }
    std::int16_t code(layout::U16 field) const { return static_cast<std::int16_t>(get(field)); }

  private:
    layout::Reader reader_;
};

// A table: `size` rows, each a view. False when it could not be fetched; a fetched table can have 0 rows. A
// row beyond the last is a false view that reads as zeros.
template <typename Row> class TableView {
  public:
    class Iterator {
      public:
        using difference_type = std::ptrdiff_t;
        using value_type = Row;
        Iterator() = default;
        Iterator(const TableView* table, std::size_t at) : table_(table), at_(at) {}
        Row operator*() const { return (*table_)[at_]; }
        Iterator& operator++() { return ++at_, *this; }
        Iterator operator++(int) { return Iterator(table_, at_++); }
        bool operator==(const Iterator&) const = default;

      private:
        const TableView* table_ = nullptr;
        std::size_t at_ = 0;
    };

    TableView() = default;
    // `bytes` holds whole rows of rowSize bytes.
    TableView(std::span<const std::uint8_t> bytes, std::size_t rowSize) : bytes_(bytes), rowSize_(rowSize) {}

    explicit operator bool() const { return bytes_.data() != nullptr; }
    std::size_t size() const { return rowSize_ ? bytes_.size() / rowSize_ : 0; }
    Row operator[](std::size_t i) const {
        return i < size() ? Row(bytes_.subspan(i * rowSize_, rowSize_)) : Row();
    }
    Iterator begin() const { return {this, 0}; }
    Iterator end() const { return {this, size()}; }

  private:
    std::span<const std::uint8_t> bytes_;
    std::size_t rowSize_ = 0;
};

// ---- adapter ----

class BoardStateView : public ReplyView {
  public:
    using ReplyView::ReplyView;
    std::uint16_t count() const { return get(layout::boardState::count); }
    std::uint16_t mask() const { return get(layout::boardState::mask); }  // bit i: board i + 1 is there
};

class BoardMacView : public ReplyView {
  public:
    using ReplyView::ReplyView;
    macAddress address() const { return get(layout::boardMac::address); }
};

class PackageRevView : public ReplyView {
  public:
    using ReplyView::ReplyView;
    std::string text() const { return std::string(get(layout::packageRev::text)); }
};

class AalStatsView : public ReplyView {
  public:
    using ReplyView::ReplyView;
    std::uint32_t txCells() const { return get(layout::aalStats::txCells); }
    std::uint32_t rxCells() const { return get(layout::aalStats::rxCells); }
    std::uint32_t txPackets() const { return get(layout::aalStats::txPackets); }
    std::uint32_t rxPackets() const { return get(layout::aalStats::rxPackets); }
    std::uint32_t rxCellErrors() const { return get(layout::aalStats::rxCellErrors); }
    std::uint32_t rxFrameErrors() const { return get(layout::aalStats::rxFrameErrors); }
    std::uint32_t rxDropped() const {
        return get(layout::aalStats::rxDropsA) + get(layout::aalStats::rxDropsB);
    }
    std::uint32_t txDropped() const { return get(layout::aalStats::txDrops); }
    std::uint32_t invalidVcis() const { return get(layout::aalStats::invalidVcis); }
    std::uint32_t invalidVpis() const { return get(layout::aalStats::invalidVpis); }
};

// Physical layer. An alarm word that is not 0 means that the condition is there.
class SuniStatsView : public ReplyView {
  public:
    using ReplyView::ReplyView;
    std::uint32_t linkKind() const { return get(layout::suniStats::linkKind); }  // LinkKind
    std::uint32_t valid() const { return get(layout::suniStats::valid); }
    std::uint32_t linkAlarm() const { return get(layout::suniStats::linkAlarm); }  // of a 25 Mbit/s link
    std::uint32_t outOfFrame() const { return get(layout::suniStats::outOfFrame); }
    std::uint32_t lossOfFrame() const { return get(layout::suniStats::lossOfFrame); }
    std::uint32_t lossOfSignal() const { return get(layout::suniStats::lossOfSignal); }
    std::uint32_t farEndFailure() const { return get(layout::suniStats::farEndFailure); }
    std::uint32_t alarmIndication() const { return get(layout::suniStats::alarmIndication); }
    std::uint32_t lossOfPointer() const { return get(layout::suniStats::lossOfPointer); }
};

// ---- signalling and virtual circuits ----

class LinkStateView : public ReplyView {
  public:
    using ReplyView::ReplyView;
    std::int16_t ilmi() const { return code(layout::linkState::ilmi); }
    std::int16_t saal() const { return code(layout::linkState::saal); }
    std::int16_t signalling() const { return code(layout::linkState::signalling); }
    atmAddress address() const { return get(layout::linkState::address); }  // registered through ILMI
};

class VcRowView : public ReplyView {
  public:
    using ReplyView::ReplyView;
    std::uint16_t vci() const { return get(layout::vcRow::vci); }
    std::uint32_t tx() const { return get(layout::vcRow::tx); }
    std::uint32_t rx() const { return get(layout::vcRow::rx); }
};

// ---- LAN Emulation Client ----

class LecStateView : public ReplyView {
  public:
    using ReplyView::ReplyView;
    std::uint32_t state() const { return get(layout::lecState::state); }  // LecState
    std::uint32_t flag() const {
        return get(layout::lecState::flag);
    }  // not 0 in lecOnPvcs: the client is up
};

// The client's connections to its LES and BUS.
enum class LecConnection { controlDirect, controlDistribute, multicastSend, multicastForward };

class LecStatsView : public ReplyView {
  public:
    using ReplyView::ReplyView;
    atmAddress address() const { return get(layout::lecStats::address); }
    std::int16_t elanType() const { return code(layout::lecStats::elanType); }
    std::int16_t mtuClass() const { return code(layout::lecStats::mtuClass); }
    std::string elanName() const { return std::string(get(layout::lecStats::elanName)); }
    macAddress mac() const { return get(layout::lecStats::mac); }
    std::uint16_t vci(LecConnection c) const {  // 0: not connected
        return get(layout::lecStats::connectionVci[asIndex(c)]);
    }
    atmAddress address(LecConnection c) const { return get(layout::lecStats::connectionAddress[asIndex(c)]); }
};

// Kind of a connection that was set up by signalling and has a known ATM address; any other is a PVC.
constexpr std::uint32_t switchedConnection = 1;

class LecRowView : public ReplyView {
  public:
    using ReplyView::ReplyView;
    macAddress mac() const { return get(layout::lecRow::mac); }
    bool switched() const { return get(layout::lecRow::kind) == switchedConnection; }
    atmAddress address() const { return get(layout::lecRow::address); }
    AddressBytes addressBytes() const { return bytes(layout::lecRow::address); }
    std::uint16_t vci() const { return get(layout::lecRow::vci); }
    std::uint32_t tx() const { return get(layout::lecRow::tx); }
    std::uint32_t rx() const { return get(layout::lecRow::rx); }
};

// ---- LAN Emulation Server ----

class LesStateView : public ReplyView {
  public:
    using ReplyView::ReplyView;
    std::uint32_t state() const { return get(layout::lesState::state); }  // LesState
    std::uint32_t flag() const {
        return get(layout::lesState::flag);
    }  // not 0 in lesServing: the server is up
};

class LesStatsView : public ReplyView {
  public:
    using ReplyView::ReplyView;
    atmAddress address() const { return get(layout::lesStats::address); }
    atmAddress busAddress() const { return get(layout::lesStats::busAddress); }
    std::int16_t elanType() const { return code(layout::lesStats::elanType); }
    std::int16_t mtuClass() const { return code(layout::lesStats::mtuClass); }
    std::string elanName() const { return std::string(get(layout::lesStats::elanName)); }
};

class LesRowView : public ReplyView {
  public:
    using ReplyView::ReplyView;
    macAddress mac() const { return get(layout::lesRow::mac); }
    atmAddress address() const { return get(layout::lesRow::address); }
    AddressBytes addressBytes() const { return bytes(layout::lesRow::address); }
    std::int16_t state() const { return code(layout::lesRow::state); }
    std::uint16_t controlVci() const { return get(layout::lesRow::controlVci); }
    std::uint32_t controlTx() const { return get(layout::lesRow::controlTx); }
    std::uint32_t controlRx() const { return get(layout::lesRow::controlRx); }
    std::uint16_t multicastVci() const { return get(layout::lesRow::multicastVci); }
    std::uint32_t multicastTx() const { return get(layout::lesRow::multicastTx); }
    std::uint32_t multicastRx() const { return get(layout::lesRow::multicastRx); }
};

// ---- LAN Emulation Configuration Server ----

class LecsStateView : public ReplyView {
  public:
    using ReplyView::ReplyView;
    std::uint32_t state() const { return get(layout::lecsState::state); }  // LecsState
};

class LecsStatsView : public ReplyView {
  public:
    using ReplyView::ReplyView;
    atmAddress address() const { return get(layout::lecsStats::address); }
    std::int16_t elanType() const { return code(layout::lecsStats::elanType); }
    std::int16_t etherMtuClass() const { return code(layout::lecsStats::etherMtuClass); }
    std::int16_t tokenRingMtuClass() const { return code(layout::lecsStats::tokenRingMtuClass); }
    bool registered() const { return get(layout::lecsStats::registered) != 0; }
    std::uint32_t validRequests() const { return get(layout::lecsStats::validRequests); }
    std::uint32_t invalidRequests() const { return get(layout::lecsStats::invalidRequests); }
    std::uint32_t rejected() const { return get(layout::lecsStats::rejected); }
    std::uint32_t connectionsMade() const { return get(layout::lecsStats::made); }
    std::uint32_t connectionsOpen() const { return get(layout::lecsStats::open); }
};

class LecsRowView : public ReplyView {
  public:
    using ReplyView::ReplyView;
    static constexpr std::uint8_t temporary = 2;  // kind of a learned entry

    esiSelector client() const { return get(layout::lecsRow::client); }
    std::uint8_t les() const { return get(layout::lecsRow::les); }  // index of the server it is mapped to
    std::uint8_t kind() const { return get(layout::lecsRow::kind); }
};

// ---- Classical IP ----

class IpStateView : public ReplyView {
  public:
    using ReplyView::ReplyView;
    std::uint32_t state() const { return get(layout::ipState::state); }  // IpState
};

class IpStatsView : public ReplyView {
  public:
    using ReplyView::ReplyView;
    std::uint32_t txPackets() const { return get(layout::ipStats::tx); }
    std::uint32_t txDropped() const { return get(layout::ipStats::txDrops); }
    std::uint32_t rxPackets() const { return get(layout::ipStats::rx) + get(layout::ipStats::rxMore); }
    std::uint32_t rxDropped() const { return get(layout::ipStats::rxDrops); }
};

class IpRowView : public ReplyView {
  public:
    using ReplyView::ReplyView;
    std::int16_t state() const { return code(layout::ipRow::state); }
    bool switched() const { return get(layout::ipRow::kind) == switchedConnection; }
    std::int16_t vci() const { return code(layout::ipRow::vci); }
    std::uint32_t tx() const { return get(layout::ipRow::tx); }
    std::uint32_t rx() const { return get(layout::ipRow::rx); }
    ipAddress ip() const { return get(layout::ipRow::ip); }
    atmAddress address() const { return get(layout::ipRow::address); }
    AddressBytes addressBytes() const { return bytes(layout::ipRow::address); }
};

// A PVC of the Classical IP client. Its fields are not used.
class PvcRowView : public ReplyView {
  public:
    using ReplyView::ReplyView;
};
