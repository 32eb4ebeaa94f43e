// A window that calls for attention while a condition is raised that the user has not seen.
#pragma once

#include "ui/watch/conditions.h"

class ConditionMark {
  public:
    // Of one adapter, or of all. The window is complete, and outlives this object. Ctrl+L in it opens the
    // list of conditions.
    ConditionMark(zFormDialog& window, std::optional<int> adapter);

  private:
    std::shared_ptr<Conditions> conditions_;
    Conditions::Listener listener_;
};
