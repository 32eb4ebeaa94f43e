#include "driver/control.h"

#include "platform/debuglog.h"

#include <algorithm>
#include <fmt/format.h>

namespace {

req_param_t initialHeader(const Control& enable, std::uint8_t link) {
    return {.Prim = enable.prim, .Type = enable.type, .Link = link, .Size = enable.size, .SzIO = enable.size};
}

ControlId pvcRequest(PvcChange change, ControlId add, ControlId modify, ControlId remove) {
    return change == PvcChange::add ? add : change == PvcChange::modify ? modify : remove;
}

// Ten bytes to a line.
void traceBytes(std::span<const std::uint8_t> bytes) {
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        tvlog << fmt::format("{:3x}", bytes[i]);
        if (i % 10 == 9 || i + 1 == bytes.size()) tvlog << std::endl;
    }
}

}  // namespace

Enabler::Enabler(DriverChannel& channel, std::uint8_t link, ControlId enable, ControlId disable)
    : reqParam(channel, initialHeader(controlOf(enable), link)), enableType_(controlOf(enable).type),
      disableType_(controlOf(disable).type), enableSize_(controlOf(enable).size) {}

int Enabler::Enable() {
    return sendArea(enableType_, enableSize_, enableSize_);
}

int Enabler::Disable() {
    return sendArea(disableType_, req_param_t::wireSize, req_param_t::wireSize);
}

int Enabler::sendArea(std::uint16_t type, std::uint16_t size, std::uint16_t input) {
    SetupMsg(size);
    header().Type = type;
    header().Size = size;
    header().SzIO = input;
    header().RowM = header().NRow = 0;  // whatever an earlier reply left there
    const int result = daiRequest();
    if (result == 0) channel().countAcceptedChange();
    return result;
}

int Enabler::send(ControlId id, std::span<const std::uint8_t> bytes) {
    const Control& control = controlOf(id);
    const std::span<std::uint8_t> area = SetupMsg(control.size);
    std::fill(area.begin(), area.end(), std::uint8_t{0});
    std::copy(bytes.begin(), bytes.end(), area.begin());
    tvlog << control.trace << std::endl;
    if (control.bytesTraced) traceBytes(bytes);
    if (control.type == enableType_) return Enable();
    if (control.type == disableType_) return Disable();
    return sendArea(control.type, control.size, control.input);
}

LecControl::LecControl(DriverChannel& channel, std::uint8_t link)
    : Enabler(channel, link, ControlId::lecStart, ControlId::lecStop) {}

int LecControl::start(std::uint8_t unit, const AtmLEC& settings) {
    lecReqStruct request;
    request = settings;
    header().Unit = unit;
    return send(ControlId::lecStart, request.bytes);
}

int LecControl::stop(std::uint8_t unit) {
    header().Unit = unit;
    return send(ControlId::lecStop);
}

int LecControl::changePvc(std::uint8_t unit, PvcChange change, const AtmBridgedPvc& pvc) {
    bdgPvcReqStruct request;
    request = pvc;
    header().Unit = unit;
    return send(pvcRequest(change, ControlId::bridgedPvcAdd, ControlId::bridgedPvcModify,
                           ControlId::bridgedPvcDelete),
                request.bytes);
}

LesControl::LesControl(DriverChannel& channel, std::uint8_t link)
    : Enabler(channel, link, ControlId::lesStart, ControlId::lesStop) {}

int LesControl::start(std::uint8_t unit, const AtmLES& settings) {
    lesReqStruct request;
    request = settings;
    header().Unit = unit;
    return send(ControlId::lesStart, request.bytes);
}

int LesControl::stop(std::uint8_t unit) {
    header().Unit = unit;
    return send(ControlId::lesStop);
}

IpControl::IpControl(DriverChannel& channel, std::uint8_t link)
    : Enabler(channel, link, ControlId::ipStart, ControlId::ipStop) {}

int IpControl::start(const AtmIP1577& settings) {
    ip1577ReqStruct request;
    request = settings;
    return send(ControlId::ipStart, request.bytes);
}

int IpControl::stop() {
    return send(ControlId::ipStop);
}

int IpControl::changePvc(PvcChange change, const AtmRoutedPvc& pvc) {
    rtdPvcReqStruct request;
    request = pvc;
    return send(
        pvcRequest(change, ControlId::routedPvcAdd, ControlId::routedPvcModify, ControlId::routedPvcDelete),
        request.bytes);
}

lecsRequest::lecsRequest(DriverChannel& channel, std::uint8_t link)
    : Enabler(channel, link, ControlId::lecsLoad, ControlId::lecsStop) {}

int lecsRequest::enable(const lecs_req& settings) {
    // That a server which is not running cannot be stopped is no matter; that the driver hangs is.
    if (disable() != 0 && timedOut()) return -1;
    if (send(ControlId::lecsLoad, settings.bytes) != 0) return -1;
    return go();
}

int lecsRequest::disable() {
    return send(ControlId::lecsStop);
}

int lecsRequest::go() {
    return send(ControlId::lecsGo);
}

int lecsRequest::restart() {
    return go();
}

int lecsRequest::addClient(const lecs_req& mapping) {
    return send(ControlId::lecsAddClient, mapping.bytes);
}

int lecsRequest::delClient(const lecs_req& mapping) {
    return send(ControlId::lecsDeleteClient, mapping.bytes);
}

TraceControl::TraceControl(DriverChannel& channel)
    : Enabler(channel, 0, ControlId::traceSwitch, ControlId::traceSwitch) {}

int TraceControl::switchTrace(Component component, bool on) {
    constexpr std::size_t payloadAt = 24;  // in the message
    const Control& control = controlOf(ControlId::traceSwitch);
    const std::span<std::uint8_t> area = SetupMsg(control.size);
    std::fill(area.begin(), area.end(), std::uint8_t{0});
    const std::span<std::uint8_t> payload = area.subspan(payloadAt - req_param_t::wireSize);
    payload[1] = component;
    payload[2] = on;
    tvlog << control.trace << std::endl;
    return sendArea(control.type, control.size, control.input);
}
