// One message in, one reply out: the checks that a driver makes, and the packing of what it answers.
#pragma once

#include "sim/changerequests.h"
#include "sim/resp.h"
#include "sim/state.h"

#include <string_view>
#include <vector>

namespace sim {

struct Caller {
    bool privileged = false;
    bool writer = false;  // opened for reading and writing
};

// The request that a message makes. Both pointers are null if there is no such request.
struct Asked {
    const Request* request = nullptr;
    const ChangeRequest* change = nullptr;  // of a request that changes the driver

    // The most specific name; empty if there is no such request.
    std::string_view name() const { return change ? change->name : request ? request->name : ""; }
};
Asked identify(ConstBytes message);

struct Answer {
    int error = 0;  // errno of the call; then there is no message
    std::vector<std::uint8_t> message;
};

// Does what the message asks, and returns the reply. The message may be any bytes of any length.
Answer answer(State& state, const Caller& caller, const Asked& asked, ConstBytes message);

// Writes the fields of one reply or row, forced values included. Other bytes of `out` stay as they are.
void packFields(const Request& request, const Subject& subject, int row, Bytes out);

}  // namespace sim
