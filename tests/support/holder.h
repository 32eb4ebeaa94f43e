// Another program that holds the lock of the configuration.
#pragma once

#include "platform/lock.h"
#include "tests/support/victim.h"

class Holder {
  public:
    Holder()
        : victim_([](const auto& ready) {
              platform::ConfigurationLock lock;
              if (lock.take("tvctl", std::chrono::seconds(1)) == 0) ready(), ::pause();
          }) {
        EXPECT_TRUE(victim_.ready()) << "the lock is taken already";
    }

    void end() { victim_.kill(); }
    std::string name() const { return fmt::format("tvctl (process {})", victim_.process()); }

  private:
    Victim victim_;
};
