#include "driver/requestblocks.h"

#include "platform/debuglog.h"

#include <algorithm>
#include <fmt/format.h>

namespace {

req_param_t initialHeader(const Request& enable, std::uint8_t link) {
    return {.Prim = enable.prim, .Type = enable.type, .Link = link, .Size = enable.size, .SzIO = enable.size};
}

RequestId pvcRequest(PvcChange change, RequestId add, RequestId modify, RequestId remove) {
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

Enabler::Enabler(DriverChannel& channel, std::uint8_t link, RequestId enable, RequestId disable)
    : reqParam(channel, initialHeader(requestOf(enable), link)), enableType_(requestOf(enable).type),
      disableType_(requestOf(disable).type), enableSize_(requestOf(enable).size) {}

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
    return daiRequest();
}

int Enabler::send(RequestId id, std::span<const std::uint8_t> bytes) {
    const Request& request = requestOf(id);
    const std::span<std::uint8_t> area = SetupMsg(request.size);
    std::fill(area.begin(), area.end(), std::uint8_t{0});
    std::copy(bytes.begin(), bytes.end(), area.begin());
    tvlog.line(request.trace);
    if (request.bytesTraced) traceBytes(bytes);
    const int result = request.type == enableType_    ? Enable()
                       : request.type == disableType_ ? Disable()
                                                      : sendArea(request.type, request.size, request.input);
    channel().noteChange({id, header().Link, header().Unit, bytes, outcome(), header().Resp});
    return result;
}

LecRequest::LecRequest(DriverChannel& channel, std::uint8_t link)
    : Enabler(channel, link, RequestId::lecStart, RequestId::lecStop) {}

int LecRequest::start(std::uint8_t unit, const AtmLEC& settings) {
    lecReqStruct request;
    request = settings;
    header().Unit = unit;
    return send(RequestId::lecStart, request.bytes);
}

int LecRequest::stop(std::uint8_t unit) {
    header().Unit = unit;
    return send(RequestId::lecStop);
}

int LecRequest::changePvc(std::uint8_t unit, PvcChange change, const AtmBridgedPvc& pvc) {
    bdgPvcReqStruct request;
    request = pvc;
    header().Unit = unit;
    return send(pvcRequest(change, RequestId::bridgedPvcAdd, RequestId::bridgedPvcModify,
                           RequestId::bridgedPvcDelete),
                request.bytes);
}

LesRequest::LesRequest(DriverChannel& channel, std::uint8_t link)
    : Enabler(channel, link, RequestId::lesStart, RequestId::lesStop) {}

int LesRequest::start(std::uint8_t unit, const AtmLES& settings) {
    lesReqStruct request;
    request = settings;
    header().Unit = unit;
    return send(RequestId::lesStart, request.bytes);
}

int LesRequest::stop(std::uint8_t unit) {
    header().Unit = unit;
    return send(RequestId::lesStop);
}

IpRequest::IpRequest(DriverChannel& channel, std::uint8_t link)
    : Enabler(channel, link, RequestId::ipStart, RequestId::ipStop) {}

int IpRequest::start(const AtmIP1577& settings) {
    ip1577ReqStruct request;
    request = settings;
    return send(RequestId::ipStart, request.bytes);
}

int IpRequest::stop() {
    return send(RequestId::ipStop);
}

int IpRequest::changePvc(PvcChange change, const AtmRoutedPvc& pvc) {
    rtdPvcReqStruct request;
    request = pvc;
    return send(
        pvcRequest(change, RequestId::routedPvcAdd, RequestId::routedPvcModify, RequestId::routedPvcDelete),
        request.bytes);
}

lecsRequest::lecsRequest(DriverChannel& channel, std::uint8_t link)
    : Enabler(channel, link, RequestId::lecsLoad, RequestId::lecsStop) {}

int lecsRequest::enable(const lecs_req& settings) {
    // A refused stop is harmless (the server may not be running); one without an answer is not.
    if (disable() != 0 && !answered()) return -1;
    if (send(RequestId::lecsLoad, settings.bytes) != 0) return -1;
    return go();
}

int lecsRequest::disable() {
    return send(RequestId::lecsStop);
}

int lecsRequest::go() {
    return send(RequestId::lecsGo);
}

int lecsRequest::restart() {
    return go();
}

int lecsRequest::addClient(const lecs_req& mapping) {
    return send(RequestId::lecsAddClient, mapping.bytes);
}

int lecsRequest::delClient(const lecs_req& mapping) {
    return send(RequestId::lecsDeleteClient, mapping.bytes);
}

TraceRequest::TraceRequest(DriverChannel& channel)
    : Enabler(channel, 0, RequestId::traceSwitch, RequestId::traceSwitch) {}

int TraceRequest::switchTrace(Component component, bool on) {
    constexpr std::size_t payloadAt = 24;  // in the message
    const Request& request = requestOf(RequestId::traceSwitch);
    const std::span<std::uint8_t> area = SetupMsg(request.size);
    std::fill(area.begin(), area.end(), std::uint8_t{0});
    const std::span<std::uint8_t> payload = area.subspan(payloadAt - req_param_t::wireSize);
    payload[1] = component;
    payload[2] = on;
    tvlog.line(request.trace);
    const int result = sendArea(request.type, request.size, request.input);
    channel().noteChange({request.id, 0, 0, payload, outcome(), header().Resp});
    return result;
}
