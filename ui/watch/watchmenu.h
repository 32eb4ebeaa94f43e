// The rows of context menus about conditions that the user waits for.
#pragma once

#include "metrics/subject.h"
#include "toolkit/controls/contextmenu.h"
#include "toolkit/window/application.h"

#include <optional>

// "Watch for..." the value, greyed without one or for one that cannot be watched. `keys` do the same.
zMenuRow watchForRow(zApplication& application, const std::optional<metrics::Subject>& subject,
                     const char* keys = "");

// The same for a value of the place that the user chooses, since not every one has a control that takes keys.
void watchForAny(zApplication& application, const metrics::Place& place);

// "Watched Conditions...", as Ctrl+L in windows with a ConditionMark.
zMenuRow watchedConditionsRow(zApplication& application);
