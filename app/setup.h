// Setting up an adapter, from the configuration dialog to the files.
#pragma once

#include "config/driverpdf.h"
#include "toolkit/window/window.h"

// Runs the configuration dialog on the adapter currentAdapter, above `window`, which shows the watch while the outcome
// is applied: after OK the changes go to the running driver and the adapter into the files; after Cancel the files get
// the lists only, which the driver has already. The user is told what could not be saved.
void setUpAdapter(zWindow& window, DriverPdfEdit& editor);
