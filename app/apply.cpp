#include "app/apply.h"

#include "model/settings.h"
#include "model/tvdatbuf.h"
#include "platform/index.h"

namespace {

std::size_t adapter() {
    return asIndex(currentAdapter);
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

ServiceSet MapXferBufferToData() {
    const std::size_t a = adapter();
    ServiceSet changed;
    for (std::size_t m = 0; m < xferBuffer.size(); ++m) {
        atmDevices.lec[a][m] = xferBuffer[m];
        changed.lec[m] = !(prevLecBuffer[m] == xferBuffer[m]);
    }
    for (std::size_t m = 0; m < lesXferBuffer.size(); ++m) {
        atmDevices.les[a][m] = lesXferBuffer[m];
        changed.les[m] = !sameSettings(prevLesBuffer[m], lesXferBuffer[m]);
    }
    atmDevices.lecs[a] = lecsXferBuffer;
    changed.lecs = !(prevLecsBuffer == lecsXferBuffer);
    atmDevices.ip1577[a] = ip1577XferBuffer;
    changed.ip = !(prevIP1577Buffer == ip1577XferBuffer);
    atmDevices.sig[a] = sigXferBuffer;
    changed.signalling = !sameSettings(prevSigBuffer, sigXferBuffer);
    return changed;
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
