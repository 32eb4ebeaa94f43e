// Who has which VCI of the adapter that the configuration dialog edits.
#pragma once

#include "model/rules.h"

#include <map>
#include <string>
#include <vector>

// "LEC 1" by VCI; of several owners the first.
using VciOwners = std::map<unsigned, std::string>;

// Of the enabled clients, and of the one whose list is edited, without the entry that is replaced, if any.
VciOwners vciOwners(const std::vector<AtmBridgedPvc>& edited, const AtmBridgedPvc* replaced);
VciOwners vciOwners(const std::vector<AtmRoutedPvc>& edited, const AtmRoutedPvc* replaced);

// Adds what is to be said when a further PVC takes this VCI.
void checkOwner(std::vector<Finding>& findings, const VciOwners& owners, unsigned vci);
