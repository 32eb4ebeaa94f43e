// Who runs the program.
#pragma once

#include <optional>
#include <string>
#include <sys/types.h>

namespace platform {

// The real user id is 0: configuration and driver traces may be changed.
bool superUser();

// For tests: what superUser() returns from now on; without a value the truth again.
void pretendSuperUser(std::optional<bool> answer);

struct Account {
    uid_t id = 0;
    std::string name;  // empty when the system knows none
    bool operator==(const Account&) const = default;
};

// The kernel vouches for the first two alone: the others come from the environment, and whoever has become
// the superuser can set them. Names are cut to longestName bytes and may hold any: they have to be escaped.
struct Invoker {
    Account user;                       // the real user
    std::optional<Account> login;       // who logged in (the audit system's loginuid); not of system services
    std::string sudoUser;               // SUDO_USER; empty when not set
    std::optional<Account> pkexecUser;  // PKEXEC_UID, when it is a number
    bool operator==(const Invoker&) const = default;
};

constexpr std::size_t longestName = 64;

// Each name is looked up once, since that may ask the network.
Invoker invoker();
Account realUser();      // as invoker().user
std::string userName();  // of realUser(), or the number of one without a name

}  // namespace platform
