// The response codes of refused requests. They are small, to be distinct from the codes 201 to 207 that the
// caller's side uses for system errors.
#pragma once

#include <cstdint>
#include <string_view>

namespace sim {

constexpr std::uint16_t unansweredResp = 0xdead;  // what the caller puts into Resp before it asks

// 7 is not used.
enum class Resp : std::uint16_t {
    Ok = 0,
    UnknownPrim = 1,
    UnknownType = 2,
    NoAdapter = 3,
    NoUnit = 4,
    WrongSize = 5,  // Size or SzIO
    WrongRow = 6,   // RowM 0: rows count from 1
    NotRunning = 8,
    Running = 9,
    NotLoaded = 10,         // an LECS without a configuration
    VciRange = 11,          // not from firstPvcVci to lastPvcVci
    VciInUse = 12,          // by another PVC of the adapter
    DuplicatePvc = 13,      // the client has a PVC to this address
    NoPvc = 14,             // the client has no such PVC
    DuplicateMapping = 15,  // the client is mapped already
    NoMapping = 16,
    BadValue = 17,  // a text without its end, a trace or switch that does not exist
};

// Text for the log. A code that no refusal has was forced by a fault.
std::string_view respText(std::uint16_t resp);

}  // namespace sim
