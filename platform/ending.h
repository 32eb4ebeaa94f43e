// Whether a signal has asked the program to end.
#pragma once

namespace platform {

// For the signal handler.
void noteEndAsked();

// What takes long looks at this between its steps: it then stops as soon as nothing is lost.
bool endAsked();

}  // namespace platform
