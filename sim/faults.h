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
    Dead,       // the message comes back unchanged, with Resp 0xDEAD
    Silent,     // no answer
    Malformed,  // the packet violates the protocol of exchange.h; `arg` is a Malform
    HangUp,     // the connection is closed instead of an answer
};

// A truncated packet; more bytes than asked for; a wrong or a negative length; the id of another exchange.
enum class Malform : std::uint8_t { Short, Long, Lie, Negative, Id };

struct DamageWord {
    std::string_view word;
    Damage damage;
    std::string_view arg;  // what it takes; empty: nothing
    std::int64_t most;     // the largest number that it takes, where it takes one from 0
    std::string_view help;
};
std::span<const DamageWord> damageWords();
std::span<const std::string_view> malformWords();  // by Malform

struct Fault {
    int id = 0;
    std::string kind;  // "any", "open", a target ("lec") or a request ("lec.state", "lec.start")
    unsigned nth = 0;  // damages the nth request of the kind, and is then removed; 0: damages all
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

    // Counts a request, which is of all these kinds, and returns the faults that damage it.
    std::vector<Fault> strike(std::span<const std::string_view> names);

    // Whether the driver does not do what was asked when its reply is damaged like this.
    static bool prevents(Damage damage) {
        return damage == Damage::Resp || damage == Damage::Errno || damage == Damage::Dead;
    }

    // Whether there are requests of this kind.
    static bool knownKind(std::string_view kind);

  private:
    std::vector<Fault> faults_;
    int lastId_ = 0;
};

}  // namespace sim
