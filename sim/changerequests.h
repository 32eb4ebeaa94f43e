// Every request that changes the driver, as data: its service, type, lengths and what it does.
#pragma once

#include "sim/requests.h"
#include "sim/resp.h"

#include <span>
#include <string_view>

namespace sim {

// One such request; adapter and unit exist, and `data` has the length that its request has.
struct Order {
    State& state;
    int adapter, unit;
    ConstBytes data;
};

struct ChangeRequest {
    Rid service;            // LecChanges, LesChanges, LecsChanges, IpChanges or Trace
    std::string_view name;  // "lec.start"
    std::uint16_t type;
    std::uint16_t size;    // of the whole message
    std::uint16_t szIO;    // the whole message, but for the trace switch
    std::uint16_t header;  // bytes in front of the data
    Resp (*run)(const Order&);
};

std::span<const ChangeRequest> changeRequests();

// Null for a type that the service does not have.
const ChangeRequest* changeRequest(Rid service, std::uint16_t type);

}  // namespace sim
