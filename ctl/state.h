// What the driver reports, as show --state prints it.
//
//     adapter1.rxCells = 4711                                {"adapter1":{"rxCells":4711,
//     adapter1.circuits[0].vci = 5                             "circuits":[{"vci":5,...}],
//     adapter1/lec2.state = Joining, state 3                   "lec2":{"state":{"code":3,"text":"Joining"},
//     adapter1/lec2.mtu = unknown                              "mtu":null}}}
//
// A state without words is "state 9", its text in JSON null; a size or kind without a name is "code 7" in
// both. Of a service that is absent only its state is printed; a table that is unknown is null.
#pragma once

#include "ctl/command.h"

#include <string>
#include <vector>

// Of the adapters and services with these paths; none: of all adapters that the driver reports.
// Failure::noDriver, Failure::silent; Failure::notThere for an adapter that the driver does not report.
Output showState(Session& session, const std::vector<std::string>& paths);
