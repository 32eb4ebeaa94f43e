#include "change/listrequests.h"

#include "change/listmerge.h"
#include "driver/requestblocks.h"

namespace {

struct EditRow {
    PvcChange change;
    StepKind kind;
    const char *bridged, *routed, *client;  // the requests
};
constexpr EditRow edits[] = {
    {PvcChange::add, StepKind::addEntry, "BRDG_PVCADD", "IPATM_PVCADD", "LECS_SET_ADDR"},
    {PvcChange::modify, StepKind::modifyEntry, "BRDG_PVCMODIFY", "IPATM_PVCMODIFY", nullptr},
    {PvcChange::remove, StepKind::removeEntry, "BRDG_PVCDEL", "IPATM_PVCDEL", "LECS_DEL_ADDR"},
};

const EditRow& rowOf(ListEdit edit) {
    return edits[static_cast<std::size_t>(edit)];
}

std::uint8_t byte(std::size_t index) {
    return static_cast<std::uint8_t>(index);
}

}  // namespace

RequestResult sendListEdit(int adapter, std::size_t lec, ListEdit edit, const AtmBridgedPvc& pvc,
                           DriverPhase& phase, DriverChannel& channel) {
    LecRequest request(channel, byte(asIndex(adapter)));
    const ServiceName name = lecName(adapter, lec);
    const EditRow& row = rowOf(edit);
    return phase.take({row.kind, name, row.bridged, entryName(pvc)}, request,
                      [&] { return request.changePvc(byte(lec), row.change, pvc); });
}

RequestResult sendListEdit(int adapter, ListEdit edit, const AtmRoutedPvc& pvc, DriverPhase& phase,
                           DriverChannel& channel) {
    IpRequest request(channel, byte(asIndex(adapter)));
    const ServiceName name = ipName(adapter);
    const EditRow& row = rowOf(edit);
    return phase.take({row.kind, name, row.routed, entryName(pvc)}, request,
                      [&] { return request.changePvc(row.change, pvc); });
}

RequestResult sendListEdit(int adapter, std::size_t les, ListEdit edit, const esiSelector& client,
                           DriverPhase& phase, DriverChannel& channel) {
    lecsRequest request(channel, byte(asIndex(adapter)));
    const ServiceName name = lecsName(adapter);
    const EditRow& row = rowOf(edit);
    const std::string subject = fmt::format("{} of LES {}", entryName(client), les + 1);
    return phase.take({row.kind, name, row.client, subject}, request, [&] {
        return edit == ListEdit::remove ? request.delClient(lecs_req::mapping(client, 0))
                                        : request.addClient(lecs_req::mapping(client, byte(les)));
    });
}

void sendListEdits(std::span<const int> adapters, const AtmDevices& before, const AtmDevices& after,
                   const ServiceSets& restarted, DriverPhase& phase, DriverChannel& channel) {
    const auto send = [&](int adapter, ListEdit edit, const AtmDevices& from, const AtmDevices& to) {
        const std::size_t a = asIndex(adapter);
        for (std::size_t m = 0; m < after.lec[a].size(); ++m) {
            if (!after.lec[a][m].enabled || restarted[a].lec[m]) continue;
            for (const AtmBridgedPvc& pvc : withoutThose(to.lec[a][m].pvcs, from.lec[a][m].pvcs))
                sendListEdit(adapter, m, edit, pvc, phase, channel);
        }
        if (after.ip1577[a].enabled && !restarted[a].ip)
            for (const AtmRoutedPvc& pvc : withoutThose(to.ip1577[a].pvcs, from.ip1577[a].pvcs))
                sendListEdit(adapter, edit, pvc, phase, channel);
        if (!after.lecs[a].enabled || restarted[a].lecs) return;
        for (std::size_t m = 0; m < after.les[a].size(); ++m)
            for (const esiSelector& client : withoutThose(to.les[a][m].clients, from.les[a][m].clients))
                sendListEdit(adapter, m, edit, client, phase, channel);
    };
    for (const int adapter : adapters) {
        send(adapter, ListEdit::remove, after, before);
        send(adapter, ListEdit::add, before, after);
    }
}
