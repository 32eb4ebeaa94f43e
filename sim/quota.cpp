#include "sim/quota.h"

#include <algorithm>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace sim {

namespace {

constexpr std::size_t mostOfStranger = 16;    // a main window and fifteen of statistics
constexpr std::size_t mostOfStrangers = 448;  // of all of them together: 28 users with all that they may have
constexpr std::size_t mostOfPrivileged = 200;
constexpr std::size_t commandsBeyond = 16;  // "ctl quit" must reach the simulator whatever else is open
constexpr std::size_t mostRefused = 16;     // enough to tell a program that opens one after the other

// The nodes, the signals, the standard streams and whatever a library opens.
constexpr std::size_t others = 32;
constexpr std::size_t needed =
    mostOfStrangers + 2 * (mostOfPrivileged + commandsBeyond + mostRefused) + others;
static_assert(needed <= 1024);

}  // namespace

bool isPrivileged(uid_t user) {
    // Of the kernel's own telling, as the peer's is: under fakeroot the library tells another.
    return user == 0 || user == static_cast<uid_t>(::syscall(SYS_geteuid));
}

Quota::Quota() : mostOfStrangers_(mostOfStrangers) {
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur >= needed) return;
    limit.rlim_cur = std::min<rlim_t>(needed, limit.rlim_max);
    ::setrlimit(RLIMIT_NOFILE, &limit);
    mostOfStrangers_ = std::min<std::size_t>(mostOfStrangers, limit.rlim_cur / 2);
}

Entry Quota::admit(uid_t user, bool forCommand, const Present& present) const {
    const bool privileged = isPrivileged(user);
    const std::size_t most =
        !privileged ? mostOfStranger : mostOfPrivileged + (forCommand ? commandsBeyond : 0);
    if (present.ofUser >= most + mostRefused || (!privileged && present.ofStrangers >= mostOfStrangers_))
        return Entry::HungUp;
    return present.ofUser < most ? Entry::Served : Entry::Refused;
}

}  // namespace sim
