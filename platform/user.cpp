#include "platform/user.h"

#include <unistd.h>

namespace platform {

bool superUser() {
    return ::getuid() == 0;
}

}  // namespace platform
