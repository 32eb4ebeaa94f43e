// Commands that edit a list: the running driver first, the files when it has taken everything. --file-only is
// the consent to change the files alone.
#pragma once

#include "change/listrequests.h"
#include "ctl/changing.h"
#include "ctl/paths.h"

#include <functional>
#include <vector>

// One edit: `send` sends it, `undo` takes back what the driver has taken.
struct ListStep {
    using Send = std::function<RequestResult(DriverPhase& phase, DriverChannel& channel)>;
    Send send, undo;
};

// The session's records have the edits already. Nothing is written unless the driver has taken all of them;
// what it took before it refused one, or before the save failed, is taken back. Failures as of carryOut(),
// and that of Session::noDriver().
Output carryOutLists(Session& session, const AtmDevices& before, const std::vector<ListStep>& steps,
                     const ChangeOptions& options);

// A verb of a command that edits lists: "add" of "pvc".
CLI::App* addListVerb(CLI::App& command, const char* name, const char* summary);

// Reads what is to be changed. Failure::wrongValue: the list of the service cannot be read.
void readListFor(Session& session, const ServiceId& service, const ChangeOptions& options);
