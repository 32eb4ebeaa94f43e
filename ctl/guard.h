// A change that is taken back unless it is confirmed: from before it begins until it is there.
#pragma once

#include "ctl/session.h"

class GuardedChange {
  public:
    // Under the lock. Starts the guard, unless `seconds` is 0. `services`: the paths of those that are
    // changed; `driver`: it is told of them. Failure::notDone.
    GuardedChange(Session& session, double seconds, std::vector<std::string> services, bool driver);
    // Without done() nothing waits any more.
    ~GuardedChange();
    GuardedChange(const GuardedChange&) = delete;
    GuardedChange& operator=(const GuardedChange&) = delete;

    // The change is made: from now on its seconds count. Failure::notDone: that could not be noted, and it is
    // taken back.
    void done();

  private:
    double seconds_;
    bool made_ = false;
};
