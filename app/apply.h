// Moves the configuration of the adapter currentAdapter between its records and the transfer buffers.
#pragma once

#include "change/services.h"

// Before the dialog: fills the transfer buffers, and the copies that they are compared with later, from the
// records.
void MapDataToXferBuffer();

// After OK: copies every buffer to its record. Returns the services whose settings the user changed, which
// are to be restarted.
ServiceSet MapXferBufferToData();

// After Cancel: copies only the lists; the driver already has them.
void MapXferBufferPVCsToData();
void MapXferBufferELANsToData();
