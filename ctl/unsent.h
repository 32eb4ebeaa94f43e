// What was changed in the files since the driver was loaded, and not sent to it: as the history has it, or by
// hand.
#pragma once

#include "change/pastchanges.h"

#include <ctime>
#include <set>
#include <string>
#include <string_view>
#include <vector>

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
    std::time_t loaded_ = 0;           // when the driver was loaded, as far as its device tells
    bool edited_ = false;              // the present parameter file, by hand
    std::set<unsigned> foundEdited_;   // changes that replaced one that was
};
