#include "driver/requests.h"

#include "driver/dai_api.h"
#include "driver/requeststructs.h"
#include "platform/index.h"

#include <array>

namespace {

// Requests that carry a structure behind the header, and those that are the header alone.
template <typename Structure> constexpr std::uint16_t carrying = req_param_t::wireSize + Structure::size;
constexpr std::uint16_t alone = req_param_t::wireSize;

template <typename Structure>
constexpr Request with(RequestId id, std::uint16_t prim, std::uint16_t type, const char* trace,
                       bool bytesTraced = false) {
    return {id, prim, type, carrying<Structure>, carrying<Structure>, trace, bytesTraced};
}
constexpr Request without(RequestId id, std::uint16_t prim, std::uint16_t type, const char* trace) {
    return {id, prim, type, alone, alone, trace};
}

constexpr std::array requests{
    with<lecReqStruct>(RequestId::lecStart, 17, 1, "LEC_INIT"),
    without(RequestId::lecStop, 17, 2, "LEC_DISABLE"),
    with<bdgPvcReqStruct>(RequestId::bridgedPvcAdd, 17, 3, "BRDG_PVCADD"),
    with<bdgPvcReqStruct>(RequestId::bridgedPvcDelete, 17, 4, "BRDG_PVCDEL"),
    with<bdgPvcReqStruct>(RequestId::bridgedPvcModify, 17, 5, "BRDG_PVCMODIFY"),
    with<lesReqStruct>(RequestId::lesStart, 18, 1, "LES_ENABLE"),
    without(RequestId::lesStop, 18, 2, "LES_DISABLE"),
    with<lecs_req>(RequestId::lecsLoad, 19, 1, "LECS_ENABLE"),
    without(RequestId::lecsStop, 19, 2, "LECS_DISABLE"),
    with<lecs_req>(RequestId::lecsAddClient, 19, 3, "LECS_SET_ADDR", true),
    with<lecs_req>(RequestId::lecsDeleteClient, 19, 4, "LECS_DEL_ADDR", true),
    without(RequestId::lecsGo, 19, 5, "LECS_GO"),
    with<ip1577ReqStruct>(RequestId::ipStart, 65, 1, "IPATM_INIT"),
    without(RequestId::ipStop, 65, 2, "IPATM_DISABLE"),
    with<rtdPvcReqStruct>(RequestId::routedPvcAdd, 65, 4, "IPATM_PVCADD"),
    with<rtdPvcReqStruct>(RequestId::routedPvcDelete, 65, 5, "IPATM_PVCDEL"),
    with<rtdPvcReqStruct>(RequestId::routedPvcModify, 65, 6, "IPATM_PVCMODIFY"),
    // Its payload of three bytes begins 24 bytes into the message; the rest is room for a reply.
    Request{RequestId::traceSwitch, 34, 3, 76, 27, "DaiSigDbgTrace"},
};

constexpr bool inOrder() {
    for (std::size_t i = 0; i < requests.size(); ++i)
        if (requests[i].id != static_cast<RequestId>(i)) return false;
    return requests.size() == asIndex(RequestId::count);
}
static_assert(inOrder());

}  // namespace

const Request& requestOf(RequestId id) {
    return requests[asIndex(id)];
}
