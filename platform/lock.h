// The lock that every program of this system holds while it reads, changes and replaces the configuration.
#pragma once

#include <chrono>
#include <string>

namespace platform {

// A lock of the system on /run/tarvolin.lock, which it drops by itself when the process ends. The file is
// only for its owner, stays, and holds the name and process of who has the lock, or "free", and blanks.
class ConfigurationLock {
  public:
    static constexpr const char* file = "/run/tarvolin.lock";

    ConfigurationLock() = default;
    ~ConfigurationLock() { release(); }
    ConfigurationLock(const ConfigurationLock&) = delete;
    ConfigurationLock& operator=(const ConfigurationLock&) = delete;

    // Waits for the lock no longer than `patience`, and than half a second when the program was asked to end.
    // 0; EWOULDBLOCK: somebody else holds it, and holder() says who; EINTR: the same, and the program was
    // asked to end; otherwise the errno of what failed. Held already: 0.
    int take(const std::string& program, std::chrono::milliseconds patience);
    void release();

    bool held() const { return descriptor_ >= 0; }

    // "tarvolin (process 1234)", or "another program" if the file does not say it in that form, or names a
    // process that is gone: not every holder of the lock writes.
    const std::string& holder() const { return holder_; }

  private:
    int descriptor_ = -1;
    std::string holder_;
};

}  // namespace platform
