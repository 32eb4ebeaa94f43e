// Every request that the driver answers, as data: its name, codes, size and the fields of its reply. Packing,
// commands, the log and fault injection all walk this table.
#pragma once

#include "sim/wire.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace sim {

class State;
struct Peer;

// What a field's value is computed from: an instance of a service and, in a table row, the peer of that row.
struct Subject {
    const State& state;
    int adapter;
    int unit;
    const Peer* peer;  // null outside tables
};

enum class Kind : std::uint8_t {
    Number,
    Signed,  // a number that readers take for a negative one from its highest bit on
    Text,
    Mac,
    Esi,
    Atm,
    Ip
};

// One named field of a reply or of a table row. `source` writes exactly `width` bytes; `arg` is its
// parameter.
struct Field {
    std::string_view name;
    std::uint16_t offset;
    std::uint16_t width;
    Kind kind;
    void (*source)(const Subject&, std::uint32_t arg, Bytes out);
    std::uint32_t arg;
};

enum class Shape : std::uint8_t {
    Single,  // one reply of `size` data bytes
    Count,   // NRow of the reply is the row count of the table that is next in requests()
    Table,   // rows of `size` bytes each
    Change,  // changes the driver
};

enum class Access : std::uint8_t { Anyone, Writer, Privileged };

enum class Rid : std::uint8_t {
    BoardState,
    BoardMac,
    AalStats,
    SuniStats,
    PackageRev,
    LecState,
    LecStats,
    LecRows,
    LecTable,
    LesState,
    LesStats,
    LesRows,
    LesTable,
    LecsState,
    LecsStats,
    LecsRows,
    LecsTable,
    SigLink,
    VcRows,
    VcTable,
    IpState,
    IpStats,
    IpRows,
    IpTable,
    IpPvcRows,
    IpPvcTable,
    LecChanges,
    LesChanges,
    LecsChanges,
    IpChanges,
    Trace,
    Count_
};

constexpr std::uint16_t anyType = 0xffff;

struct Request {
    Rid id;
    std::string_view target;  // the name under which commands address it: "lec", "ip.pvc"
    std::string_view name;    // of this request: "lec.state"
    std::uint16_t prim, type;
    Shape shape;
    std::uint16_t size;      // data bytes of a single reply, bytes of a table row
    std::uint8_t wireUnits;  // Unit must be less; requests of one instance ignore its value
    std::uint8_t units;      // instances per adapter; 0: one for the whole driver, and Link is ignored
    std::span<const Field> fields;
    Access access = Access::Anyone;
};

std::span<const Request> requests();
const Request& request(Rid id);

// The value of reply bytes that belong to no field: a reader with a wrong offset shows absurd numbers, not
// zeros.
constexpr std::uint8_t unnamedByte = 0xee;

}  // namespace sim
