// A process that works until it is killed.
#pragma once

#include <csignal>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

class Victim {
  public:
    // Waits until `work`, which never returns, has called the function that it is given.
    template <class Work> explicit Victim(Work work) {
        int ready[2];
        if (::pipe(ready) != 0) return;
        process_ = ::fork();
        if (process_ == 0) {
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
            work([&] {
                if (::write(ready[1], "", 1) != 1) ::_exit(1);
            });
            ::_exit(1);
        }
        ::close(ready[1]);
        char byte = 0;
        ready_ = ::read(ready[0], &byte, 1) == 1;
        ::close(ready[0]);
    }
    ~Victim() { kill(); }
    Victim(const Victim&) = delete;
    Victim& operator=(const Victim&) = delete;

    // False when it had ended by itself, or never got ready.
    bool kill() {
        int state = 0;
        if (process_ <= 0) return false;
        ::kill(process_, SIGKILL);
        ::waitpid(process_, &state, 0);
        process_ = -1;
        return ready_ && WIFSIGNALED(state);
    }
    bool ready() const { return ready_; }
    pid_t process() const { return process_; }

  private:
    pid_t process_ = -1;
    bool ready_ = false;
};
