// A change that is taken back unless it is confirmed: from before it begins until it is there.
#pragma once

#include "ctl/session.h"

class GuardedChange {
  public:
    // Under the lock. Starts the guard, unless `seconds` is 0. Failure::notDone.
    GuardedChange(Session& session, double seconds);
    // Without done() nothing waits any more.
    ~GuardedChange();
    GuardedChange(const GuardedChange&) = delete;
    GuardedChange& operator=(const GuardedChange&) = delete;

    // The change is made: from now on its seconds count.
    void done();

  private:
    double seconds_;
    bool made_ = false;
};
