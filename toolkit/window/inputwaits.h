// Whether the user waits for something that the event loop has not come to.
#pragma once

#include "platform/inputsignal.h"
#include "toolkit/window/application.h"

// True if a key or a mouse button has been pressed in a window of this program, or the window manager has
// been asked to close one, and that is still in the queue. Never blocks.
bool zInputWaits(const zApplication& application);
// The same, or if a window has to be painted.
bool zUserWaits(const zApplication& application);

// While one exists, a wait for the driver ends when the user waits.
class zInputEndsWaits : platform::InputEndsWaits {
  public:
    explicit zInputEndsWaits(const zApplication& application);
};
