// List edits of the configuration pages: the running driver first, the static configuration on consent.
#pragma once

#include "toolkit/window/window.h"

#include <set>
#include <string>
#include <vector>

// Asks whether the static configuration shall be changed all the same, when the driver is not there or
// refuses. `verb` and `what` say what was tried: "Add", "PVC". True: the user agrees.
bool agreesToStatic(zWindow& window, const char* verb, const std::string& what, const char* title);

// Takes `leaving`, which is empty then, out of a list: of equal entries the first ones. In one pass, since
// taking thousands out one by one would cost the length of the list for each.
template <class Entry> void takeOut(std::vector<Entry>& list, std::multiset<Entry>& leaving) {
    std::erase_if(list, [&leaving](const Entry& entry) {
        const auto found = leaving.find(entry);
        if (found == leaving.end()) return false;
        leaving.erase(found);
        return true;
    });
    leaving.clear();
}
