// Fault injection: which requests go wrong, and how.
#pragma once

#include "sim/requests.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace sim {

enum class Damage : std::uint8_t {
    Resp,       // refused with Resp `arg`
    Errno,      // the call fails with errno `arg`
    Late,       // answered after `arg` milliseconds of real time
    Short,      // at most `arg` bytes of the message come back
    NRow,       // the reply claims `arg` rows
    Dead,       // the message comes back as it went, Resp 0xDEAD included
    Silent,     // no answer
    Malformed,  // a packet that breaks the exchange, in the form `arg`
    HangUp,     // the connection is closed instead of an answer
};

enum class Malform : std::uint8_t { Short, Long, Lie, Negative, Id };

struct DamageWord {
    std::string_view word;
    Damage damage;
    bool takesArg;
    std::string_view help;
};
std::span<const DamageWord> damageWords();
std::span<const std::string_view> malformWords();  // by Malform

struct Fault {
    int id = 0;
    std::string
        kind;  // "any", "open", a target ("lec") or a request ("lec.state", "lec.control", "lec.start")
    unsigned nth = 0;  // from now; 0: every one. An nth fault is gone when it has struck.
    Damage damage{};
    std::int32_t arg = 0;
    unsigned seen = 0;  // requests of the kind since the fault was set

    std::string text() const;
};

class Faults {
  public:
    int add(Fault fault);  // returns its id
    bool remove(int id);
    void clear() { faults_.clear(); }
    const std::vector<Fault>& all() const { return faults_; }

    // Counts one request and returns the faults that strike it, by any of its names.
    std::vector<Fault> strike(std::span<const std::string_view> names);

    // Whether a fault of this kind keeps the driver from doing what was asked.
    static bool prevents(Damage damage) {
        return damage == Damage::Resp || damage == Damage::Errno || damage == Damage::Dead;
    }

    // Whether a fault of this kind can ever strike.
    static bool knownKind(std::string_view kind);

  private:
    std::vector<Fault> faults_;
    int lastId_ = 0;
};

}  // namespace sim
