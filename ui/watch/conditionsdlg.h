// "Watched Conditions": a list of what the user waits for, and how it stands.
#pragma once

#include "toolkit/table/table.h"
#include "ui/watch/conditions.h"

class DConditionsDlg : public zFormDialog {
  public:
    // `conditions` closes the dialog, and outlives it.
    DConditionsDlg(Conditions& conditions, zApplication& application);

  private:
    void fill();
    void clickedRemoveBTN();

    Conditions& conditions_;
    zTable& table_;
    Conditions::Listener listener_;
};
