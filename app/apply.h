// Taking over what the configuration dialog edited: transfer buffers to records, and changed services restarted in
// the running driver. Works on the adapter currentAdapter.
#pragma once

#include <functional>

// Shows a warning to the user.
using Warner = std::function<void(const char* text, const char* title)>;

// Before the dialog: fills the buffers and their previous-value copies from the records.
void MapDataToXferBuffer();

// Whether a buffer is no longer as MapDataToXferBuffer filled it, lists included.
bool buffersChanged();

// After OK: every buffer into its record; each service whose settings changed is restarted or stopped in the
// driver, if there was one at start-up (ioctlDesc). Failed requests are logged and change nothing else; when
// no read-write channel can be opened no request is sent. True: the driver has accepted at least one request.
bool MapXferBufferToData(const Warner& warn);

// After Cancel: only the lists, which the driver has already.
void MapXferBufferPVCsToData();
void MapXferBufferELANsToData();
