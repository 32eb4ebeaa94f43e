// Hears every key and button that is pressed in the program's windows, before the control that it is for.
#pragma once

#include <functional>

#include <X11/Intrinsic.h>

class zPresses {
  public:
    // The handler must not make or destroy such an object.
    zPresses(Display* display, std::function<void(XEvent& event)> heard);
    ~zPresses();
    zPresses(const zPresses&) = delete;
    zPresses& operator=(const zPresses&) = delete;

  private:
    struct Dispatch;

    std::function<void(XEvent& event)> heard_;
};
