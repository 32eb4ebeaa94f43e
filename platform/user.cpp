#include "platform/user.h"

#include <unistd.h>

namespace platform {

namespace {

std::optional<bool> pretended;

}  // namespace

bool superUser() {
    return pretended.value_or(::getuid() == 0);
}

void pretendSuperUser(std::optional<bool> answer) {
    pretended = answer;
}

}  // namespace platform
