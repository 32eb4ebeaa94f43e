// The calls that the tool makes on the driver access device.
//
// On a System V host the calls go to the kernel. Elsewhere a Unix-domain socket may stand at the device's
// path, and each call is carried over it as one exchange (see socketdevice.h). The layer above cannot tell
// the two apart. Tests replace the whole device with setDevice().
#pragma once

#include "platform/root.h"

#include <chrono>
#include <functional>
#include <string_view>

namespace platform {

constexpr int I_STR = 0x5308;  // the STREAMS ioctl "send a message and wait for its answer"

// The argument of I_STR, in the System V layout.
struct strioctl {
    int ic_cmd = 0;
    int ic_timout = 0;  // seconds; 0: the stream's default, 15; -1: no limit
    int ic_len = 0;     // bytes at ic_dp; after the call: bytes that came back
    char* ic_dp = nullptr;
};

// All calls follow the system's: -1 and errno on failure.
class Device {
  public:
    virtual ~Device() = default;

    // Opens the device with the system path `path`; oflag 0 reads, 2 reads and writes. Never returns 0, which
    // means "no channel" to every caller. A path at which neither a character device nor a socket stands
    // gives ENOENT (nothing) or ENODEV.
    virtual int open(std::string_view path, int oflag) = 0;

    // ioctl: sends the block's message; the answer replaces its leading bytes, at most ic_len of them.
    virtual int streamsIoctl(int descriptor, int request, strioctl& block) = 0;

    virtual int close(int descriptor) = 0;

    // Whether the driver has hung up on an open descriptor, so far as that can be told without a request.
    virtual bool hungUp(int /*descriptor*/) { return false; }
};

// For as long as it lives, and once: if a call over a socket waits for its answer at this moment, `action` is
// called, and the call goes on waiting. It must not call the device. A call of the kernel cannot be left.
// There is one at a time.
class WhileWaiting {
  public:
    using Clock = std::chrono::steady_clock;

    WhileWaiting(Clock::time_point at, std::function<void()> action);
    ~WhileWaiting();
    WhileWaiting(const WhileWaiting&) = delete;
    WhileWaiting& operator=(const WhileWaiting&) = delete;

    // For the call that waits. `next`: max() when nothing is to be done any more.
    static Clock::time_point next();
    static void act();
};

// Until when the driver is waited for, whatever it is asked: calls end with ETIME then. Without a limit (the
// usual state) each call has its own.
class WaitLimit {
  public:
    using Clock = std::chrono::steady_clock;

    static void set(Clock::time_point moment);
    static Clock::time_point moment();  // max() without a limit
    static bool passed() { return moment() <= Clock::now(); }
};

Device& device();

// Replaces the device; null restores the system's. Returns the previous one. Neither is owned.
Device* setDevice(Device* other);

}  // namespace platform
