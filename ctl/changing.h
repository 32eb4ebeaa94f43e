// What all commands that change the configuration have in common: their options, the change itself, and what
// is printed of it.
#pragma once

#include "change/adapterchange.h"
#include "ctl/command.h"

#include <memory>
#include <string>

struct ChangeOptions {
    bool fileOnly = false;  // the driver is not told
    bool dryRun = false;
    double confirm = 0;  // seconds until the change is taken back; 0: never
    std::string note;

    void add(CLI::App& command, bool withConfirm = true);
};

// Reads what is to be changed: under the lock unless nothing is.
void readFor(Session& session, bool dryRun);

// Makes the session's records, which `before` has as they were, those of the files and of the driver.
// Services with other settings are restarted, list edits sent to those that run. Failure::wrongValue: a key
// has no line in its section, or the list of a service that would be restarted cannot be read.
// Failure::locked, Failure::changedMeanwhile, Failure::notDone: the files are as before.
Output carryOut(Session& session, const AtmDevices& before, const ChangeOptions& options);

// The files as carryOut() would write them; nothing happens. Failures as there.
ConfigFiles filesAfter(Session& session, const AtmDevices& before);

// Puts files back as they were, and tells the driver how their records differ from the present ones. Failures
// as above.
Output putBack(Session& session, std::vector<PastFile> files, const ChangeOptions& options);

// Edits of lists that the driver is told of before anything else.
class PreparedLists {
  public:
    // The session's records have the edits. Failures as of carryOut(): nothing has happened then.
    PreparedLists(Session& session, const AtmDevices& before);
    ~PreparedLists();

    bool differ() const;
    Output unchanged() const;
    Output preview(const std::vector<SentRequest>& requests) const;  // that would be sent
    // One was not taken; the files stay.
    Output notTaken(const std::vector<SentRequest>& requests, const std::vector<DriverSentence>& why) const;
    // The driver has taken these.
    Output save(std::vector<SentRequest> requests, const ChangeOptions& options) const;

  private:
    Session& session_;
    const AtmDevices& before_;
    std::unique_ptr<struct Plan> plan_;
};

// Where the user sits: the host of a remote shell, or the terminal; "-": neither.
std::string userPlace();

// A request as it is printed.
Tree requestTree(const SentRequest& request, bool planned = false);
