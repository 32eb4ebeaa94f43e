#include "platform/ending.h"

#include <algorithm>
#include <csignal>
#include <initializer_list>
#include <poll.h>

namespace platform {

namespace {

volatile std::sig_atomic_t asked = 0;

constexpr std::initializer_list<int> endSignals{SIGINT, SIGTERM, SIGHUP};

// A signal that comes between a look at `asked` and a wait would not end the wait.
class SignalsHeld {
  public:
    SignalsHeld() {
        sigset_t held;
        ::sigemptyset(&held);
        for (const int number : endSignals) ::sigaddset(&held, number);
        ::pthread_sigmask(SIG_BLOCK, &held, &before_);
    }
    ~SignalsHeld() { ::pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
    SignalsHeld(const SignalsHeld&) = delete;
    SignalsHeld& operator=(const SignalsHeld&) = delete;

    const sigset_t& before() const { return before_; }

  private:
    sigset_t before_{};
};

}  // namespace

void noteEndAsked() {
    asked = 1;
}

void watchEndSignals() {
    struct sigaction ending {};
    ending.sa_handler = [](int) { noteEndAsked(); };  // no SA_RESTART
    for (const int number : endSignals) {
        struct sigaction now {};
        if (::sigaction(number, nullptr, &now) == 0 && now.sa_handler != SIG_IGN)
            ::sigaction(number, &ending, nullptr);
    }
}

bool endAsked() {
    return asked != 0;
}

bool waitUnlessEnded(std::chrono::steady_clock::time_point moment, int descriptor) {
    using namespace std::chrono;
    const SignalsHeld held;
    pollfd reader{descriptor, 0, 0};
    while (!endAsked()) {
        const auto left = std::max<nanoseconds>(moment - steady_clock::now(), 0ns);
        const timespec wait{duration_cast<seconds>(left).count(), (left % 1s).count()};
        if (::ppoll(&reader, 1, &wait, &held.before()) > 0) return false;
        if (moment <= steady_clock::now()) return !endAsked();
    }
    return false;
}

}  // namespace platform
