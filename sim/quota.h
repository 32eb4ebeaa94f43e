// Who may have how many connections, so that nobody can lock out the others: each is a descriptor, of which a
// process usually has 1024.
#pragma once

#include <cstddef>
#include <cstdint>
#include <sys/types.h>

namespace sim {

enum class Entry : std::uint8_t {
    Served,
    Refused,  // one too many: whatever is asked on it is refused, so that the caller learns why
    HungUp,   // far too many: closed at once
};

// Connections that are there already; both kinds count.
struct Present {
    std::size_t ofUser = 0;       // of the one who comes, the refused ones included
    std::size_t ofStrangers = 0;  // of all users without privilege
};

// The super-user and the owner of the simulator, as the kernel knows them.
bool isPrivileged(uid_t user);

class Quota {
  public:
    // Has the system allow as many descriptors as all connections need. If it allows fewer, users without
    // privilege have half of them.
    Quota();

    // What becomes of a connection to the device, or to the socket of the commands.
    Entry admit(uid_t user, bool forCommand, const Present& present) const;

  private:
    std::size_t mostOfStrangers_;
};

}  // namespace sim
