// What is wrong in the files of the configuration: with their values (model/rules.h), and with the files
// themselves, of which something cannot be read as it is meant. Numbers are those of one table:
//
//     116  a key that its section lacks              117  a value outside its range
//     118  a list file that is cut, or no list       119  a section too long, or out of reach
#pragma once

#include "config/configfiles.h"
#include "model/rules.h"

#include <string>
#include <vector>

// A finding, and where to look for its reason.
struct PlacedFinding {
    int adapter = -1;  // from 0; -1: none of them, and the finding's path is that of a section in the file
    Finding finding;
    std::string file;
    int line = 1;  // from 1
};

// Of all adapters in their order, then of the services in theirs. `devices` is what the files are read as, or
// what they become.
//
// Of a service that is not enabled only whether it is meant to be is looked at. About a service whose section
// cannot be read nothing else is said.
std::vector<PlacedFinding> CheckFiles(ConfigFiles& files, const AtmDevices& devices);
