// What was changed in the files since the driver was loaded, and not sent to it: as the history has it, or by
// hand.
#pragma once

#include "change/pastchanges.h"

#include <ctime>
#include <set>
#include <string>
#include <string_view>
#include <vector>

// When the driver was loaded, as far as its device's node tells; 0: there is none.
std::time_t driverLoaded();

class Unsent {
  public:
    // Reads the history. Whoever may not read it knows the time of the parameter file only.
    Unsent();

    // Whether a setting may have been changed so. An edit by hand may have changed any.
    bool changed(const std::string& service, std::string_view key) const;

  private:
    bool isAsLeft(std::size_t since, const std::string& content) const;
    void lookForEdits();

    std::vector<PastChange> changes_;  // newest first
    std::time_t loaded_;               // see driverLoaded()
    bool edited_ = false;              // the present parameter file, by hand
    std::set<unsigned> foundEdited_;   // changes that replaced one that was
};
