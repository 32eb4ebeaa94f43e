// A running driver simulator below the present root directory, for tests that need a driver.
#pragma once

#include "tests/support/temproot.h"

#include <chrono>
#include <initializer_list>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

// Runs "tvsim" with the words of the line to its end, behind another program if one is given: its exit
// status, and what it said on its error output.
struct Finished {
    int status;
    std::string err;
};
Finished runSimulator(const std::string& line, const std::string& behind = {});

// Copies the sample configuration below the root.
void writeSampleConfiguration(const TempRoot& root);

// A root that has it.
struct SampleRoot : TempRoot {
    SampleRoot() { writeSampleConfiguration(*this); }
};

class Simulator {
  public:
    // Starts "tvsim" with the options and waits until it listens. Throws std::runtime_error when it does not.
    explicit Simulator(const std::vector<std::string>& options = {"--frozen"});
    ~Simulator();  // ends it with SIGTERM, and with SIGKILL when it does not follow
    Simulator(const Simulator&) = delete;
    Simulator& operator=(const Simulator&) = delete;

    // A simulator command with the words of the line, split at blanks. What it shows, without the last line
    // end. Throws std::runtime_error with its message when the command is refused. Goes straight to the
    // command socket, so that a test can give hundreds without starting a program for each.
    std::string ctl(std::string_view line) const;

    // Waits for the end, after a signal or "ctl quit". Its exit status.
    int wait();

    pid_t pid() const { return pid_; }

  private:
    pid_t pid_ = -1;
    std::string commandNode_;
};
