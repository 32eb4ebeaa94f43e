#include "platform/inputsignal.h"

#include "platform/ending.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace platform {

namespace {

const InputEndsWaits* present = nullptr;
volatile std::sig_atomic_t came = 0;

// Without SA_RESTART, so that the wait is not begun again. It stays: a signal may come late.
bool handleSignal() {
    struct sigaction noting {};
    noting.sa_handler = [](int) { came = 1; };
    ::sigemptyset(&noting.sa_mask);
    return ::sigaction(SIGIO, &noting, nullptr) == 0;
}

}  // namespace

InputEndsWaits::InputEndsWaits(int descriptor, std::function<bool()> matters)
    : descriptor_(descriptor), flags_(::fcntl(descriptor, F_GETFL)), matters_(std::move(matters)) {
    present = this;
    came = 0;
    static const bool handled = handleSignal();  // by default it would end the program
    const f_owner_ex thisThread{F_OWNER_TID, ::gettid()};
    ::fcntl(descriptor_, F_SETOWN_EX, &thisThread);
    if (handled && flags_ != -1) ::fcntl(descriptor_, F_SETFL, flags_ | O_ASYNC);
}

InputEndsWaits::~InputEndsWaits() {
    if (flags_ != -1) ::fcntl(descriptor_, F_SETFL, flags_);
    present = nullptr;
}

bool InputEndsWaits::goesOn() {
    if (!present || !came || endAsked()) return false;
    came = 0;
    const bool matters = present->matters_();
    errno = EINTR;  // whatever looking has left
    return !matters;
}

}  // namespace platform
