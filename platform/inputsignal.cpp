#include "platform/inputsignal.h"

#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace platform {

namespace {

// Stays: a signal may come late.
void handleSignal() {
    struct sigaction nothing {};
    nothing.sa_handler = [](int) {};
    ::sigemptyset(&nothing.sa_mask);
    ::sigaction(SIGIO, &nothing, nullptr);
}

}  // namespace

InputEndsWaits::InputEndsWaits(int descriptor)
    : descriptor_(descriptor), flags_(::fcntl(descriptor, F_GETFL)) {
    static const bool handled = (handleSignal(), true);
    static_cast<void>(handled);
    const f_owner_ex thisThread{F_OWNER_TID, ::gettid()};
    ::fcntl(descriptor_, F_SETOWN_EX, &thisThread);
    if (flags_ != -1) ::fcntl(descriptor_, F_SETFL, flags_ | O_ASYNC);
}

InputEndsWaits::~InputEndsWaits() {
    if (flags_ != -1) ::fcntl(descriptor_, F_SETFL, flags_);
}

}  // namespace platform
