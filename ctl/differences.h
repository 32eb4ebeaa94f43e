// What differs between two tables of records, line by line as show has them.
#pragma once

#include "ctl/paths.h"
#include "ctl/tree.h"

#include <string>
#include <vector>

struct Difference {
    std::string where;      // "adapter1/lec2.mtu", "adapter1/lec2.pvcs[1]"
    std::string from, to;   // texts
    Json fromJson, toJson;  // null of an entry that is on the other side only
    bool hasFrom = true, hasTo = true;
    std::string mark = {};  // stands behind the sign
};

// Settings that can be set, and entries, which are compared whole: of one that is in both lists, wherever,
// nothing is said.
std::vector<Difference> differences(const ServiceId& service, const AtmDevices& from, const AtmDevices& to);

// An object with where, and what there is of `from` and `to` under these names; and a line for each side.
Tree differenceTree(const Difference& difference, const char* from, const char* to);
