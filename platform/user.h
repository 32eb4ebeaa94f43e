// Who runs the program.
#pragma once

#include <optional>

namespace platform {

// The real user id is 0: configuration and driver traces may be changed.
bool superUser();

// For tests: the answer of superUser() from now on; nothing: the system's.
void pretendSuperUser(std::optional<bool> answer);

}  // namespace platform
