// Input that ends a wait for the driver.
#pragma once

#include <functional>

namespace platform {

// While such an object exists, a wait for the driver in the thread that made it ends with EINTR when
// something comes to the descriptor, a socket. The signal SIGIO does this, since the wait may be inside a
// call of the kernel. What comes just before the wait begins does not end it. There is one object at a time.
class InputEndsWaits {
  public:
    // `matters` is asked when something has come. False: over a socket the wait goes on; a call of the kernel
    // cannot be resumed. It must not call the device.
    InputEndsWaits(int descriptor, std::function<bool()> matters);
    ~InputEndsWaits();
    InputEndsWaits(const InputEndsWaits&) = delete;
    InputEndsWaits& operator=(const InputEndsWaits&) = delete;

    // For the call that waits, when a signal has come: whether it was that of input that does not matter.
    static bool goesOn();

  private:
    int descriptor_, flags_;
    std::function<bool()> matters_;
};

}  // namespace platform
