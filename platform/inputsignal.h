// Input that ends a wait for the driver.
#pragma once

namespace platform {

// While such an object exists, a wait for the driver in the thread that made it ends with EINTR when
// something comes to the descriptor, a socket. The signal SIGIO does this, since the wait may be inside a
// call of the kernel. What comes just before the wait begins does not end it. One object a descriptor.
class InputEndsWaits {
  public:
    explicit InputEndsWaits(int descriptor);
    ~InputEndsWaits();
    InputEndsWaits(const InputEndsWaits&) = delete;
    InputEndsWaits& operator=(const InputEndsWaits&) = delete;

  private:
    int descriptor_, flags_;
};

}  // namespace platform
