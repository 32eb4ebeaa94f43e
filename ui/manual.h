// The manual, tarvolin(8), which is built into the program.
#pragma once

#include "toolkit/window/window.h"

#include <string_view>

// The text of its part about the window of this layout; empty if it has none.
std::string_view manualPart(std::string_view layout);

// F1 in the window, whatever has the focus, opens that part in a window beside it.
void offerManual(zFormDialog& window);
