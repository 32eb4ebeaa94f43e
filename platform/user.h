// Who runs the program.
#pragma once

#include <optional>

namespace platform {

// The real user id is 0: configuration and driver traces may be changed.
bool superUser();

// For tests: what superUser() returns from now on; without a value the truth again.
void pretendSuperUser(std::optional<bool> answer);

}  // namespace platform
