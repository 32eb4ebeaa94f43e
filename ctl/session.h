// What every command works with: the options, the configuration, the driver.
#pragma once

#include "change/configuration.h"
#include "ctl/paths.h"
#include "ctl/status.h"
#include "driver/channel.h"
#include "driver/discovery.h"

#include <chrono>
#include <string>
#include <vector>

struct Options {
    bool json = false;
    std::chrono::duration<double> timeout{15};  // of all waiting for the driver
    // Also as root nothing is taken over or completed that another program has left, and the driver is opened
    // for reading alone.
    bool readOnly = false;
};

class Session {
  public:
    explicit Session(const Options& options);

    const Options& options() const { return options_; }

    // The records as this command leaves them; `configuration` knows what the files had.
    AtmDevices devices;
    Configuration configuration{"tvctl", devices};
    ConfigFiles files;  // as they were read

    // Reads the files of all adapters as they stand at one moment, without locking them.
    // Failure::wrongValue: the parameter file cannot be read.
    void read();
    // The same under the lock, which stays. Failure::notPermitted: the user is not root. Failure::notDone: a
    // save that was interrupted cannot be completed. When somebody else has the lock needLock() says so, so
    // that what is wrong with the command itself comes first.
    void readForChange();
    // Failure::locked: nothing may be changed.
    void needLock() const;

    // The lock alone, for whoever reads nothing.
    void lock();

    // What is to be said on standard error whatever the command does.
    const std::vector<std::string>& warnings() const { return warnings_; }

    // Asks the driver once which adapters there are. Without a driver nothing is asked.
    const Discovery& discovery();
    bool hasDriver() { return discovery().complete; }
    // A closed one when there is no driver.
    DriverChannel& channel() { return channel_; }
    // Opens it for reading alone, or also for requests that change something.
    bool openDriver(int mode);
    // There is a driver, also one that cannot be opened or does not answer.
    bool driverIsThere() const;
    // Why it is closed: Failure::noDriver, silent, refused or notPermitted. `advice` follows "there is no
    // driver".
    Failure noDriver(const std::string& advice = {}) const;

    // Adapters that have a section or that the driver reports, ascending.
    std::vector<int> adapters();
    bool hasSection(int adapter) const;
    // The list of a service is in a file that cannot be read, or is no list: nothing is known of it. The
    // file; empty: it is known.
    std::string unknownListOf(const ServiceId& service) const;
    bool knowsMac(int adapter);  // the driver has said it

  private:
    Options options_;
    std::optional<Failure> lockFailure_;
    int openError_ = 0;  // errno
    std::vector<std::string> warnings_;
    DriverChannel channel_;
    std::optional<aalInfo> query_;
    std::optional<Discovery> discovery_;
    std::set<std::string> unknownLists_;
    std::set<std::string> missing_;  // sections, by path, that are missing or faulty
};

// Failure::notPermitted unless the real user is root.
void requireRoot();
