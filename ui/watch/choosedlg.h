// "Watch": the values of an adapter or a service that can be watched, those without a field of their own,
// too.
#pragma once

#include "ui/watch/conditions.h"

class DChooseDlg : public zFormDialog {
  public:
    // `conditions` asks for the chosen value, closes the dialog, and outlives it. Values of tables have rows,
    // and are not offered.
    DChooseDlg(Conditions& conditions, zApplication& application, const metrics::Place& place);

  private:
    void choose();

    Conditions& conditions_;
    std::vector<metrics::Subject> subjects_;  // by line of the list
};
