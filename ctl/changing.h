// What all commands that change the configuration have in common: their options, the change itself, and what
// is printed of it.
#pragma once

#include "change/adapterchange.h"
#include "ctl/command.h"

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
// has no line in its section. Failure::changedMeanwhile, Failure::notDone: the files are as before.
Output carryOut(Session& session, const AtmDevices& before, const ChangeOptions& options);

// The same of lists alone, where `requests` are what the driver has taken already.
Output saveLists(Session& session, const AtmDevices& before, std::vector<SentRequest> requests);

// Where the user sits: the host of a remote shell, or the terminal; "-": neither.
std::string userPlace();

// A request as it is printed.
Tree requestTree(const SentRequest& request);
