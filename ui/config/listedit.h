// List edits of the configuration pages: the running driver first, the static configuration on consent.
#pragma once

#include "toolkit/window/window.h"

#include <string>

// Asks whether the static configuration shall be changed all the same, when the driver is not there or
// refuses. `verb` and `what` say what was tried: "Add", "PVC". True: the user agrees.
bool agreesToStatic(zWindow& window, const char* verb, const std::string& what, const char* title);
