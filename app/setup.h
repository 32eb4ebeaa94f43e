// The configuration sequence of one adapter: dialog, driver, files.
#pragma once

#include "change/configuration.h"
#include "toolkit/window/window.h"

// Runs the configuration dialog of the adapter currentAdapter above `window`. After OK the changes are sent
// to the running driver and the whole adapter is saved; after Cancel only the lists that were edited, which
// the driver already has. Questions ask what to do about the changes of others, and message boxes say what
// the files or the driver did not take. `window` shows the watch cursor while changes are applied. When the X
// server is lost meanwhile, all this is done without windows.
void setUpAdapter(zWindow& window, Configuration& configuration);
