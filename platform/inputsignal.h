// Input that ends a wait for the driver.
#pragma once

namespace platform {

// While such an object exists, a wait for the driver in the thread that made it ends with EINTR when
// something comes to the descriptor, a socket. Since the driver's own call may wait then, this is done by a
// signal, SIGIO: what comes just before the wait begins does not end it. Of a descriptor one at a time.
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
