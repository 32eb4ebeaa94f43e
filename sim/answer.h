// One message in, one reply out: the checks that a driver makes, and the packing of what it answers.
#pragma once

#include "sim/requests.h"
#include "sim/state.h"

#include <string_view>
#include <vector>

namespace sim {

constexpr std::uint16_t unansweredResp = 0xdead;  // what the caller puts into Resp before it asks

// Response codes of refused requests. Small, and apart from the 201 to 207 that the caller's side makes of
// system errors.
enum class Resp : std::uint16_t {
    Ok = 0,
    UnknownPrim = 1,
    UnknownType = 2,
    NoAdapter = 3,
    NoUnit = 4,
    WrongSize = 5,
    WrongRow = 6,      // RowM 0: rows count from 1
    NotAvailable = 7,  // a control request, while the simulator answers queries only
};
std::string_view respText(std::uint16_t resp);

struct Caller {
    bool privileged = false;
    bool writer = false;  // opened for reading and writing
};

struct Answer {
    const Request* request = nullptr;  // null: no such request
    int error = 0;                     // errno of the call; then there is no message
    std::vector<std::uint8_t> message;
};

// Never trusts `message`: any bytes of any length are answered or refused.
Answer answer(const State& state, const Caller& caller, ConstBytes message);

// The fields of one reply or row, forced values included; everything else of `out` is left alone.
void packFields(const Request& request, const Subject& subject, int row, Bytes out);

}  // namespace sim
