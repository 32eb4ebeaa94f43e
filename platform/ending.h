// Whether a signal has asked the program to end.
#pragma once

#include <chrono>

namespace platform {

// For the signal handler.
void noteEndAsked();

// SIGINT, SIGTERM and SIGHUP ask for the end from now on, as far as they are not ignored, and a wait for the
// driver ends with EINTR. For programs without a handler of their own.
void watchEndSignals();

// What takes long looks at this between its steps: it then stops as soon as nothing is lost.
bool endAsked();

// Waits until the moment. False, and at once, when the end has been asked for, or when nobody reads any more
// what is written to the descriptor (a pipe, a socket or a terminal).
bool waitUnlessEnded(std::chrono::steady_clock::time_point moment, int descriptor);

}  // namespace platform
