// Undoing changes of the history: the files as they were, and the driver told of the difference.
#pragma once

#include "change/adapterchange.h"
#include "change/pending.h"

#include <string>
#include <vector>

// Which services have other settings in one table than in another; they are to be restarted.
ServiceSets changedServices(std::span<const int> adapters, const AtmDevices& before, const AtmDevices& after);

// The records that the files would have with these in place of the present ones. False: the parameter file
// could not be read then.
bool recordsWith(const std::vector<PastFile>& files, AtmDevices& devices);

// Takes back the change that was not confirmed, in a process that has nothing else to do, and says so in
// syslog. What cannot be undone stays, and that is said, too. Returns why it stays; empty: it does not.
std::string takeBackPending(const std::string& program);

// For every program at its start, as root: takes over a guard that is gone. What was done about it, a
// sentence; empty: nothing had to be.
std::string takeOverGuard(const std::string& program);
