// The configuration sequence of one adapter: dialog, driver, files.
#pragma once

#include "config/driverpdf.h"
#include "toolkit/window/window.h"

// Runs the configuration dialog of the adapter currentAdapter above `window`. After OK the changes are sent
// to the running driver and the whole adapter is saved; after Cancel only the lists are saved, which the
// driver already has. Message boxes say what could not be saved. `window` shows the watch cursor while
// changes are applied.
void setUpAdapter(zWindow& window, DriverPdfEdit& editor);
