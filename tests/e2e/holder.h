// Another program that holds the lock of the configuration. Include it after gtest.
#pragma once

#include "platform/lock.h"

#include <csignal>
#include <fmt/format.h>
#include <string>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

class Holder {
  public:
    Holder() {
        int ready[2];
        if (::pipe(ready) != 0) return;
        process_ = ::fork();
        if (process_ == 0) {
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
            platform::ConfigurationLock lock;
            if (lock.take("tvctl", std::chrono::seconds(1)) != 0 || ::write(ready[1], "", 1) != 1) ::_exit(1);
            for (;;) ::pause();
        }
        ::close(ready[1]);
        char byte = 0;
        EXPECT_EQ(::read(ready[0], &byte, 1), 1) << "the lock is taken already";
        ::close(ready[0]);
    }
    ~Holder() { end(); }
    Holder(const Holder&) = delete;
    Holder& operator=(const Holder&) = delete;

    void end() {
        if (process_ <= 0) return;
        ::kill(process_, SIGKILL);
        ::waitpid(process_, nullptr, 0);
        process_ = -1;
    }
    std::string name() const { return fmt::format("tvctl (process {})", process_); }

  private:
    pid_t process_ = -1;
};
