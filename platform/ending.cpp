#include "platform/ending.h"

#include <csignal>

namespace platform {

namespace {

volatile std::sig_atomic_t asked = 0;

}  // namespace

void noteEndAsked() {
    asked = 1;
}

bool endAsked() {
    return asked != 0;
}

}  // namespace platform
