#include "change/restart.h"

#include "change/listmerge.h"
#include "driver/requestblocks.h"
#include "platform/debuglog.h"
#include "platform/index.h"

namespace {

bool isAnswer(RequestResult answer) {
    return answer == RequestResult::taken || answer == RequestResult::refused;
}

struct Restart {
    int adapter;
    const AtmDevices& devices;
    DriverPhase& phase;
    DriverChannel& channel;

    std::size_t index() const { return asIndex(adapter); }
    std::uint8_t link() const { return static_cast<std::uint8_t>(adapter); }

    // A restarted client has no PVCs. Where the restart was refused it still has its old ones, and those that
    // are new are worth trying; where nothing was sent there is nothing more to tell.
    template <class Request, class Record>
    void client(const ServiceName& name, Request& request, const Record& record, const char* start,
                const char* stop, const char* addPvc, auto begin, auto end, auto add) const {
        if (!record.enabled) {
            phase.take({StepKind::stop, name, stop}, request, end);
            return;
        }
        const RequestResult started = phase.take({StepKind::restartClient, name, start}, request, begin);
        if (!isAnswer(started)) return;
        const bool restarted = started == RequestResult::taken;
        for (const auto& pvc : record.pvcs)
            phase.take(
                {restarted ? StepKind::clientPvc : StepKind::oldClientPvc, name, addPvc, entryName(pvc)},
                request, [&] { return add(pvc); });
    }

    void lec(std::size_t m) const {
        LecRequest request(channel, link());
        const auto unit = static_cast<std::uint8_t>(m);
        const AtmLEC& record = devices.lec[index()][m];
        client(
            lecName(adapter, m), request, record, "LEC_INIT", "LEC_DISABLE", "BRDG_PVCADD",
            [&] { return request.start(unit, record); }, [&] { return request.stop(unit); },
            [&](const AtmBridgedPvc& pvc) { return request.changePvc(unit, PvcChange::add, pvc); });
    }

    void les(std::size_t m) const {
        LesRequest request(channel, link());
        const ServiceName name = lesName(adapter, m);
        const auto unit = static_cast<std::uint8_t>(m);
        const AtmLES& record = devices.les[index()][m];
        const StepKind kind = record.enabled ? StepKind::stopForRestart : StepKind::stop;
        const RequestResult stopped =
            phase.take({kind, name, "LES_DISABLE"}, request, [&] { return request.stop(unit); });
        if (record.enabled && isAnswer(stopped))
            phase.take({stopped == RequestResult::taken ? StepKind::startServer : StepKind::restartServer,
                        name, "LES_ENABLE"},
                       request, [&] { return request.start(unit, record); });
    }

    void lecs() const {
        lecsRequest request(channel, link());
        const ServiceName name = lecsName(adapter);
        const AtmLECS& record = devices.lecs[index()];
        if (!record.enabled) {
            phase.take({StepKind::stop, name, "LECS_DISABLE"}, request, [&] { return request.disable(); });
            return;
        }
        lecsReqStruct settings;
        settings = record;
        const RequestResult started = phase.take({StepKind::restartLecs, name, "LECS_ENABLE"}, request,
                                                 [&] { return request.enable(settings); });
        if (!isAnswer(started)) return;
        const bool restarted = started == RequestResult::taken;
        for (std::size_t m = 0; m < asIndex(lesCount); ++m)
            for (const esiSelector& client : devices.les[index()][m].clients)
                phase.take({restarted ? StepKind::lecsClient : StepKind::oldLecsClient, name, "LECS_SET_ADDR",
                            fmt::format("{} of LES {}", entryName(client), m + 1)},
                           request, [&] {
                               return request.addClient(
                                   lecs_req::mapping(client, static_cast<std::uint8_t>(m)));
                           });
    }

    void ip() const {
        IpRequest request(channel, link());
        const AtmIP1577& record = devices.ip1577[index()];
        client(
            ipName(adapter), request, record, "IPATM_INIT", "IPATM_DISABLE", "IPATM_PVCADD",
            [&] { return request.start(record); }, [&] { return request.stop(); },
            [&](const AtmRoutedPvc& pvc) { return request.changePvc(PvcChange::add, pvc); });
    }
};

}  // namespace

void restartServices(int adapter, const AtmDevices& devices, const ServiceSet& changed, DriverPhase& phase,
                     DriverChannel& channel) {
    const Restart restart{adapter, devices, phase, channel};
    const auto begins = [&](const std::string& service) {
        tvlog << service << " data changed" << std::endl;
        return phase.wanted();
    };
    for (std::size_t m = 0; m < asIndex(lecCount); ++m)
        if (changed.lec[m] && begins(fmt::format("Lec{}", m))) restart.lec(m);
    for (std::size_t m = 0; m < asIndex(lesCount); ++m)
        if (changed.les[m] && begins(fmt::format("Les{}", m))) restart.les(m);
    if (changed.lecs && begins("Lecs")) restart.lecs();
    if (changed.ip && begins("IP1577")) restart.ip();
    if (changed.signalling) begins("Signalling");
}
