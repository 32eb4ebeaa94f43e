#include "platform/inputsignal.h"

#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace platform {

namespace {

// Without SA_RESTART, so that the wait is not begun again. It stays: a signal may come late.
bool handleSignal() {
    struct sigaction nothing {};
    nothing.sa_handler = [](int) {};
    ::sigemptyset(&nothing.sa_mask);
    return ::sigaction(SIGIO, &nothing, nullptr) == 0;
}

}  // namespace

InputEndsWaits::InputEndsWaits(int descriptor)
    : descriptor_(descriptor), flags_(::fcntl(descriptor, F_GETFL)) {
    static const bool handled = handleSignal();  // by default it would end the program
    const f_owner_ex thisThread{F_OWNER_TID, ::gettid()};
    ::fcntl(descriptor_, F_SETOWN_EX, &thisThread);
    if (handled && flags_ != -1) ::fcntl(descriptor_, F_SETFL, flags_ | O_ASYNC);
}

InputEndsWaits::~InputEndsWaits() {
    if (flags_ != -1) ::fcntl(descriptor_, F_SETFL, flags_);
}

}  // namespace platform
