// Whether the user waits for something that the event loop has not come to.
#pragma once

#include "toolkit/window/application.h"

// True if a key or a mouse button has been pressed in a window of this program, or the window manager has
// been asked to close one, and that is still in the queue. Never blocks.
bool zInputWaits(const zApplication& application);
