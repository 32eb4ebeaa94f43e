// Moves the configuration of the adapter currentAdapter between its records and the transfer buffers, and
// restarts changed services in the running driver.
#pragma once

#include <functional>

// Shows a warning to the user.
using Warner = std::function<void(const char* text, const char* title)>;

// Before the dialog: fills the transfer buffers, and the copies that they are compared with later, from the
// records.
void MapDataToXferBuffer();

// True if the settings, or the lists, in a buffer differ from what MapDataToXferBuffer put there.
bool settingsChanged();
bool listsChanged();

// After OK: copies every buffer to its record. Each service whose settings changed is restarted or stopped in
// the driver, if it was there when it was asked last (ioctlDesc). Failed requests are logged and have no
// other effect; if no read-write channel can be opened, no request is sent. Returns true if the driver
// accepted at least one request.
bool MapXferBufferToData(const Warner& warn);

// After Cancel: copies only the lists; the driver already has them.
void MapXferBufferPVCsToData();
void MapXferBufferELANsToData();
