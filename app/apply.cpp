#include "app/apply.h"

#include "driver/channel.h"
#include "driver/requestblocks.h"
#include "model/settings.h"
#include "model/tvdatbuf.h"
#include "platform/debuglog.h"
#include "platform/index.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>

namespace {

std::size_t adapter() {
    return asIndex(currentAdapter);
}

std::uint8_t link() {
    return static_cast<std::uint8_t>(currentAdapter);
}

// After a request without an answer nothing more is sent for the same service: each further one could block
// the window for as long again, or reach a driver that has started anew.
bool hangs(const reqParam& request, int result) {
    if (result == 0 || request.answered()) return false;
    tvlog << "The driver does not answer; nothing more is sent for this service" << std::endl;
    return true;
}

void applyLec(DriverChannel& channel, std::size_t m) {
    AtmLEC& record = atmDevices.lec[adapter()][m];
    record = xferBuffer[m];
    if (prevLecBuffer[m] == xferBuffer[m]) return;
    tvlog << "Lec" << m << " data changed" << std::endl;
    if (!channel) return;
    LecRequest request(channel, link());
    const auto unit = static_cast<std::uint8_t>(m);
    if (!record.enabled) {
        request.stop(unit);
        return;
    }
    // A restarted client has no PVCs.
    if (hangs(request, request.start(unit, record))) return;
    for (const AtmBridgedPvc& pvc : record.pvcs)
        if (hangs(request, request.changePvc(unit, PvcChange::add, pvc))) return;
}

void applyLes(DriverChannel& channel, std::size_t m) {
    AtmLES& record = atmDevices.les[adapter()][m];
    record = lesXferBuffer[m];
    if (sameSettings(prevLesBuffer[m], lesXferBuffer[m])) return;
    tvlog << "Les" << m << " data changed" << std::endl;
    if (!channel) return;
    LesRequest request(channel, link());
    const auto unit = static_cast<std::uint8_t>(m);
    if (!hangs(request, request.stop(unit)) && record.enabled) request.start(unit, record);
}

void applyLecs(DriverChannel& channel) {
    AtmLECS& record = atmDevices.lecs[adapter()];
    record = lecsXferBuffer;
    if (prevLecsBuffer == lecsXferBuffer) return;
    tvlog << "Lecs data changed" << std::endl;
    if (!channel) return;
    lecsRequest request(channel, link());
    if (!record.enabled) {
        request.disable();
        return;
    }
    lecsReqStruct settings;
    settings = record;
    if (hangs(request, request.enable(settings))) return;
    std::uint8_t les = 0;
    for (const AtmLES& server : atmDevices.les[adapter()]) {
        for (const esiSelector& client : server.clients)
            if (hangs(request, request.addClient(lecs_req::mapping(client, les)))) return;
        ++les;
    }
}

void applyIp1577(DriverChannel& channel) {
    AtmIP1577& record = atmDevices.ip1577[adapter()];
    record = ip1577XferBuffer;
    if (prevIP1577Buffer == ip1577XferBuffer) return;
    tvlog << "IP1577 data changed" << std::endl;
    if (!channel) return;
    IpRequest request(channel, link());
    if (!record.enabled) {
        request.stop();
        return;
    }
    if (hangs(request, request.start(record))) return;
    for (const AtmRoutedPvc& pvc : record.pvcs)
        if (hangs(request, request.changePvc(PvcChange::add, pvc))) return;
}

void applySignalling(const Warner& warn) {
    atmDevices.sig[adapter()] = sigXferBuffer;
    if (sameSettings(prevSigBuffer, sigXferBuffer)) return;
    tvlog << "Signalling data changed" << std::endl;
    warn("Signalling parameters changed!\nYou will need to manually restart signalling.",
         "Configuration Change");
}

}  // namespace

void MapDataToXferBuffer() {
    const std::size_t a = adapter();
    for (std::size_t m = 0; m < xferBuffer.size(); ++m)
        prevLecBuffer[m] = xferBuffer[m] = atmDevices.lec[a][m];
    for (std::size_t m = 0; m < lesXferBuffer.size(); ++m)
        prevLesBuffer[m] = lesXferBuffer[m] = atmDevices.les[a][m];
    prevLecsBuffer = lecsXferBuffer = atmDevices.lecs[a];
    prevIP1577Buffer = ip1577XferBuffer = atmDevices.ip1577[a];
    prevSigBuffer = sigXferBuffer = atmDevices.sig[a];
}

bool settingsChanged() {
    for (std::size_t m = 0; m < xferBuffer.size(); ++m)
        if (!(prevLecBuffer[m] == xferBuffer[m])) return true;
    for (std::size_t m = 0; m < lesXferBuffer.size(); ++m)
        if (!sameSettings(prevLesBuffer[m], lesXferBuffer[m])) return true;
    return !(prevLecsBuffer == lecsXferBuffer) || !(prevIP1577Buffer == ip1577XferBuffer) ||
           !sameSettings(prevSigBuffer, sigXferBuffer);
}

bool listsChanged() {
    for (std::size_t m = 0; m < xferBuffer.size(); ++m)
        if (prevLecBuffer[m].pvcs != xferBuffer[m].pvcs) return true;
    for (std::size_t m = 0; m < lesXferBuffer.size(); ++m)
        if (prevLesBuffer[m].clients != lesXferBuffer[m].clients) return true;
    return prevIP1577Buffer.pvcs != ip1577XferBuffer.pvcs;
}

bool MapXferBufferToData(const Warner& warn) {
    DriverChannel channel;
    if (!channel.open(O_RDWR) && ioctlDesc)
        tvlog << "Cannot open the driver to apply changes: " << std::strerror(errno) << std::endl;
    if (!ioctlDesc) channel.close();  // no driver: nothing is sent
    for (std::size_t m = 0; m < xferBuffer.size(); ++m) applyLec(channel, m);
    for (std::size_t m = 0; m < lesXferBuffer.size(); ++m) applyLes(channel, m);
    applyLecs(channel);
    applyIp1577(channel);
    applySignalling(warn);
    return channel.acceptedChanges() > 0;
}

void MapXferBufferPVCsToData() {
    for (std::size_t m = 0; m < xferBuffer.size(); ++m)
        atmDevices.lec[adapter()][m].pvcs = xferBuffer[m].pvcs;
    atmDevices.ip1577[adapter()].pvcs = ip1577XferBuffer.pvcs;
}

void MapXferBufferELANsToData() {
    for (std::size_t m = 0; m < lesXferBuffer.size(); ++m)
        atmDevices.les[adapter()][m].clients = lesXferBuffer[m].clients;
}
