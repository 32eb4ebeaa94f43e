// A change request as the history keeps it.
#pragma once

#include "change/changerecord.h"
#include "driver/channel.h"

// Of a request that a dialog has sent: list edits go to the driver at once.
SentRequest sentRequest(const SentChange& change);

// Of a request of a change's record, by its place: an edit of a list that the driver refused, and that was
// then given up, so that neither the driver nor the files have it. Entries that a service is told of when it
// is started are none of these.
bool isGivenUp(std::size_t request, const ChangeRecord& record);
