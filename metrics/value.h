// A value that the driver reports, or why there is none.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <variant>

namespace metrics {

using Moment = std::chrono::steady_clock::time_point;

// Why a value is not known.
enum class Unknown : std::uint8_t {
    // The driver did not give it.
    silent,    // no answer, or none that can be read
    notAsked,  // something asked before got no answer
    refused,
    incomplete,  // part of the answer is missing
    // There is nothing to be known.
    absent,         // the service is not there
    noAlarms,       // this kind of link has no such alarm
    lossOfFrame,    // the alarm says nothing without frames
    notRegistered,  // no address is registered
    notConnected,
    noCircuit,  // the driver does not list the virtual circuit
    unnamed,    // the driver's code has no meaning that is known
    noRow,      // the table has no row with this key
    pvc,        // a permanent connection has no address
    // Of a rate.
    noneBefore,      // the reading before does not have the value, or has it of another circuit
    driverChanged,   // the counters of the reading before were those of another driver
    beyondLink,      // more than the link carries: the counter was set back
    mayHaveWrapped,  // more than once, in so long a time
    sharedKey,       // other rows of the table have the same key
};
const char* wordsOf(Unknown why);

// Whether the driver owes the value.
constexpr bool isOwed(Unknown why) {
    return why <= Unknown::incomplete;
}

// A state as the driver's code, with its words; null: it has none.
struct State {
    std::int64_t code = 0;
    const char* words = nullptr;
    bool operator==(const State& other) const { return code == other.code; }
};

// The code of a size or a kind that has no name.
struct Unnamed {
    std::int64_t code = 0;
    bool operator==(const Unnamed&) const = default;
};

// Texts are as the driver sent them, of any bytes.
using Value = std::variant<Unknown, std::uint32_t, bool, State, Unnamed, std::string>;

}  // namespace metrics
