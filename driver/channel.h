// An open connection to the driver, which closes with its owner.
//
// Request blocks (reqparam.h) are bound to a channel, send their messages over it, and must not outlive it.
// The channel counts what has happened on it since it was made, over every closing and opening.
#pragma once

#include <cstdint>
#include <span>

class DriverChannel {
  public:
    DriverChannel();  // closed
    ~DriverChannel() { close(); }
    DriverChannel(const DriverChannel&) = delete;
    DriverChannel& operator=(const DriverChannel&) = delete;

    // Opens the access device; oflag is O_RDONLY or O_RDWR. Closes first what was open. False when there is
    // no driver or it refuses (errno says why); the channel is closed then.
    bool open(int oflag);
    void close();
    explicit operator bool() const { return descriptor_ > 0; }

    // Sends a message and waits for the reply: see dai_req. A closed channel fails it with 201.
    int request(std::span<std::uint8_t> message);

    unsigned long timeouts() const { return timeouts_; }                // requests that got no answer in time
    unsigned long acceptedChanges() const { return acceptedChanges_; }  // change requests that succeeded

    // For the request blocks: the driver has accepted a change request.
    void countAcceptedChange() { ++acceptedChanges_; }

  private:
    int descriptor_ = 0;
    unsigned long timeouts_ = 0;
    unsigned long acceptedChanges_ = 0;
};

// The channels of the windows; each statistics dialog has one more of its own. ioctlDesc is the main
// window's, read-only: its queries and the trace switches. SetupIoctlDesc is the configuration dialog's,
// read-write: what its pages ask and change.
extern DriverChannel ioctlDesc;
extern DriverChannel SetupIoctlDesc;

// Keeps a channel that lives longer open for as long as this object lives. The channel stays closed when
// opening fails.
class OpenedChannel {
  public:
    OpenedChannel(DriverChannel& channel, int oflag) : channel_(channel) { channel_.open(oflag); }
    ~OpenedChannel() { channel_.close(); }
    OpenedChannel(const OpenedChannel&) = delete;
    OpenedChannel& operator=(const OpenedChannel&) = delete;

  private:
    DriverChannel& channel_;
};

// Tells whether a request on a channel has timed out since this object was made. Each timeout takes many
// seconds, so that a caller with further requests stops then. The channel must outlive the object.
class TimeoutWatch {
  public:
    explicit TimeoutWatch(const DriverChannel& channel) : channel_(channel), before_(channel.timeouts()) {}

    bool any() const { return channel_.timeouts() != before_; }
    void restart() { before_ = channel_.timeouts(); }  // as if made now

  private:
    const DriverChannel& channel_;
    unsigned long before_;
};
