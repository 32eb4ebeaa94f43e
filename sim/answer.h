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

// Which request a message is. Null where there is none such.
struct Asked {
    const Request* request = nullptr;
    const ChangeRequest* change = nullptr;  // of a request that changes the driver

    // The most particular name; empty when there is no such request.
    std::string_view name() const { return change ? change->name : request ? request->name : ""; }
};
Asked identify(ConstBytes message);

struct Answer {
    int error = 0;  // errno of the call; then there is no message
    std::vector<std::uint8_t> message;
};

// Does what the message asks. Never trusts it: any bytes of any length are answered or refused.
Answer answer(State& state, const Caller& caller, const Asked& asked, ConstBytes message);

// The fields of one reply or row, forced values included; everything else of `out` is left alone.
void packFields(const Request& request, const Subject& subject, int row, Bytes out);

}  // namespace sim
