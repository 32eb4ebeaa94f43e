// "Watch": the values of an adapter or a service that can be watched, also those without a field of their
// own.
#pragma once

#include "ui/watch/conditions.h"

class DChooseDlg : public zFormDialog {
  public:
    // `conditions` opens "Watch for" with the chosen value, closes this dialog, and outlives it. Values of
    // tables are not offered: which row is meant is not known.
    DChooseDlg(Conditions& conditions, zApplication& application, const metrics::Place& place);

  private:
    void choose();

    Conditions& conditions_;
    std::vector<metrics::Subject> subjects_;  // by line of the list
};
