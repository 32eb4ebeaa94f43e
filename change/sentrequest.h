// A change request as the history keeps it.
#pragma once

#include "change/changerecord.h"
#include "driver/channel.h"

// Of a request that a dialog has sent: list edits go to the driver at once.
SentRequest sentRequest(const SentChange& change);

// Whether this request of the record, counted from 0, is a list edit that the driver refused and that was
// then given up, so that neither driver nor files have it. Entries sent when a service starts do not count.
bool isGivenUp(std::size_t request, const ChangeRecord& record);
