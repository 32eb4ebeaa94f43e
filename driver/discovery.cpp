#include "driver/discovery.h"

#include "platform/debuglog.h"
#include "platform/index.h"

#include <fmt/format.h>

namespace {

macAddress plus(const macAddress& address, int count) {
    macAddress::Bytes bytes = address.bytes();
    bytes[5] = static_cast<std::uint8_t>(bytes[5] + count);
    return macAddress(bytes);
}

// A garbled answer is no reason to give up: it took no time, and the next one may be good.
bool nobodyThere(const aalInfo& query) {
    return !query.answered() && query.outcome() != Outcome::garbled;
}

}  // namespace

void deriveMacAddresses(int adapter, const macAddress& address, AtmDevices& devices) {
    const std::size_t a = asIndex(adapter);
    for (int k = 0; k < lecCount; ++k) devices.lec[a][asIndex(k)].mac = plus(address, k);
    devices.ip1577[a].mac = plus(address, lecCount);
}

Discovery discoverAdapters(aalInfo& query, AtmDevices& devices) {
    Discovery found;
    if (const PackageRevView revision = query.GetPackageRev()) found.version = revision.text();
    if (nobodyThere(query)) return found;
    const BoardStateView boards = query.GetBoardState();
    if (nobodyThere(query)) return found;
    found.complete = true;
    if (!boards) return found;
    const unsigned mask = boards.mask();  // copied, since the next request overwrites the reply
    tvlog << "NumBoards - " << boards.count() << std::endl;
    tvlog << fmt::format("Boards    - {:x}", mask) << std::endl;

    for (int i = 0; i < adapterCount; ++i) {
        if (!(mask & (1U << i))) continue;
        FoundAdapter adapter{i, {}};
        if (const BoardMacView board = found.complete
                                           ? query.GetBoardMacAddress(static_cast<std::uint16_t>(i + 1))
                                           : BoardMacView()) {
            const macAddress address = board.address();
            adapter.line = fmt::format("ATM Adapter {}  -  {}", i + 1, address.GetFMacAddress());
            deriveMacAddresses(i, address, devices);
        }
        found.complete = !nobodyThere(query);
        found.adapters.push_back(std::move(adapter));
    }
    return found;
}
