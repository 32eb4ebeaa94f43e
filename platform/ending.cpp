#include "platform/ending.h"

#include <csignal>
#include <initializer_list>

namespace platform {

namespace {

volatile std::sig_atomic_t asked = 0;

}  // namespace

void noteEndAsked() {
    asked = 1;
}

void watchEndSignals() {
    struct sigaction ending {};
    ending.sa_handler = [](int) { noteEndAsked(); };  // no SA_RESTART
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction now {};
        if (::sigaction(number, nullptr, &now) == 0 && now.sa_handler != SIG_IGN)
            ::sigaction(number, &ending, nullptr);
    }
}

bool endAsked() {
    return asked != 0;
}

}  // namespace platform
