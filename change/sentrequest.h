// A change request as the history keeps it.
#pragma once

#include "change/changerecord.h"
#include "driver/channel.h"

// Of a request that a dialog has sent: list edits go to the driver at once.
SentRequest sentRequest(const SentChange& change);
