// Who runs the program.
#pragma once

namespace platform {

// The real user id is 0: configuration and driver traces may be changed.
bool superUser();

}  // namespace platform
