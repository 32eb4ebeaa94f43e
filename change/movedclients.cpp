#include "change/movedclients.h"

#include "change/listmerge.h"
#include "platform/index.h"

#include <map>

namespace {

using Clients = std::vector<esiSelector>;
using Bytes = esiSelector::Bytes;

const Clients& clientsOf(const AtmDevices& devices, int adapter, std::size_t server) {
    return devices.les[asIndex(adapter)][server].clients;
}

// The servers to which one side has given clients, for each client.
class Given {
  public:
    Given(const AtmDevices& before, const AtmDevices& after, int adapter) {
        for (std::size_t m = 0; m < asIndex(lesCount); ++m)
            for (const esiSelector& client :
                 withoutThose(clientsOf(after, adapter, m), clientsOf(before, adapter, m)))
                servers_.emplace(client.bytes(), m);
    }

    // Each is taken once.
    std::optional<std::size_t> take(const esiSelector& client) {
        const auto found = servers_.find(client.bytes());
        if (found == servers_.end()) return {};
        const std::size_t server = found->second;
        servers_.erase(found);
        return server;
    }

  private:
    std::multimap<Bytes, std::size_t> servers_;
};

}  // namespace

std::vector<MovedClient> movedApart(const AtmDevices& base, const AtmDevices& mine, const AtmDevices& theirs,
                                    int adapter) {
    std::vector<MovedClient> moved;
    Given myGiven(base, mine, adapter), theirGiven(base, theirs, adapter);
    for (std::size_t from = 0; from < asIndex(lesCount); ++from) {
        const Clients& was = clientsOf(base, adapter, from);
        const Clients myTaken = withoutThose(was, clientsOf(mine, adapter, from));
        const Clients onlyMine = withoutThose(myTaken, withoutThose(was, clientsOf(theirs, adapter, from)));
        for (const esiSelector& client : withoutThose(myTaken, onlyMine)) {
            const MovedClient both{client, from, myGiven.take(client), theirGiven.take(client)};
            if (both.mine != both.theirs) moved.push_back(both);
        }
    }
    return moved;
}
