// ELAN clients that two sides have moved to different servers.
#pragma once

#include "model/tvdatbuf.h"

#include <cstddef>
#include <optional>
#include <vector>

// A client that both sides have taken from one server of an adapter. Servers are indices; nothing: it went to
// none.
struct MovedClient {
    esiSelector client;
    std::size_t from;
    std::optional<std::size_t> mine, theirs;
};

// Of those the ones that did not go to the same server: both would get them. With one side at most there is
// none.
std::vector<MovedClient> movedApart(const AtmDevices& base, const AtmDevices& mine, const AtmDevices& theirs,
                                    int adapter);
