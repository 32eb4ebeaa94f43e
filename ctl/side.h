// One side of a comparison: what is known of a configuration, from wherever.
#pragma once

#include "ctl/paths.h"
#include "ctl/session.h"
#include "ctl/status.h"
#include "ctl/tree.h"

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

// What a difference of a value means: no more than that it is one; the value is what was last sent; nothing
// tells it; the network has told it to the service.
enum class Mark { none, sent, unknown, learned };

struct SideValue {
    std::string text;
    Json json;
    Mark mark = Mark::none;
};

struct SideEntry {
    std::string identity;  // what the driver tells of an entry: address and VCI, or the client
    std::string text;
    Json json;
};
struct SideList {
    bool identities = false;  // of the entries the identity alone is known
    std::vector<SideEntry> entries;
};

struct SideService {
    std::map<std::string, SideValue> values;  // by key; what is not there is not compared
    std::map<std::string, SideList> lists;    // by name
    bool running = true;                      // false: the driver knows of no such service
    bool whole = true;                        // false: something that should be known is not
};

struct Side {
    std::map<std::string, SideService> services;  // by path; one that is not there is not compared
    std::optional<Failure> complaint;             // about what is not known and should be
};

// All of these adapters, without lists that the session could not read.
Side sideOf(const AtmDevices& devices, const std::vector<int>& adapters, const Session& session);

// What a document mentions of records that have it applied.
Side sideOf(const Json& document, const AtmDevices& devices);

// What was last sent to the driver and still holds. Failure::noDriver, Failure::silent.
Side sentSide(Session& session);

// What the driver tells, and where it cannot, what was last sent to it; what it refuses to tell is not there.
// `inFiles` has what it is compared with: what a LEC is told by its LECS is learned. Failure::noDriver,
// Failure::silent.
Side driverSide(Session& session, const AtmDevices& inFiles);
