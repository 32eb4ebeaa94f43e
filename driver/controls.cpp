#include "driver/controls.h"

#include "driver/controlstructs.h"
#include "driver/dai_api.h"

#include <array>
#include <cstddef>

namespace {

// Requests that carry a structure behind the header, and those that are the header alone.
template <typename Structure> constexpr std::uint16_t carrying = req_param_t::wireSize + Structure::size;
constexpr std::uint16_t alone = req_param_t::wireSize;

template <typename Structure>
constexpr Control with(ControlId id, std::uint16_t prim, std::uint16_t type, const char* trace,
                       bool bytesTraced = false) {
    return {id, prim, type, carrying<Structure>, carrying<Structure>, trace, bytesTraced};
}
constexpr Control without(ControlId id, std::uint16_t prim, std::uint16_t type, const char* trace) {
    return {id, prim, type, alone, alone, trace};
}

constexpr std::array controls{
    with<lecReqStruct>(ControlId::lecStart, 17, 1, "LEC_INIT"),
    without(ControlId::lecStop, 17, 2, "LEC_DISABLE"),
    with<bdgPvcReqStruct>(ControlId::bridgedPvcAdd, 17, 3, "BRDG_PVCADD"),
    with<bdgPvcReqStruct>(ControlId::bridgedPvcDelete, 17, 4, "BRDG_PVCDEL"),
    with<bdgPvcReqStruct>(ControlId::bridgedPvcModify, 17, 5, "BRDG_PVCMODIFY"),
    with<lesReqStruct>(ControlId::lesStart, 18, 1, "LES_ENABLE"),
    without(ControlId::lesStop, 18, 2, "LES_DISABLE"),
    with<lecs_req>(ControlId::lecsLoad, 19, 1, "LECS_ENABLE"),
    without(ControlId::lecsStop, 19, 2, "LECS_DISABLE"),
    with<lecs_req>(ControlId::lecsAddClient, 19, 3, "LECS_SET_ADDR", true),
    with<lecs_req>(ControlId::lecsDeleteClient, 19, 4, "LECS_DEL_ADDR", true),
    without(ControlId::lecsGo, 19, 5, "LECS_GO"),
    with<ip1577ReqStruct>(ControlId::ipStart, 65, 1, "IPATM_INIT"),
    without(ControlId::ipStop, 65, 2, "IPATM_DISABLE"),
    with<rtdPvcReqStruct>(ControlId::routedPvcAdd, 65, 4, "IPATM_PVCADD"),
    with<rtdPvcReqStruct>(ControlId::routedPvcDelete, 65, 5, "IPATM_PVCDEL"),
    with<rtdPvcReqStruct>(ControlId::routedPvcModify, 65, 6, "IPATM_PVCMODIFY"),
    // Its payload of three bytes begins 24 bytes into the message; the rest is room for a reply.
    Control{ControlId::traceSwitch, 34, 3, 76, 27, "DaiSigDbgTrace"},
};

constexpr bool inOrder() {
    for (std::size_t i = 0; i < controls.size(); ++i)
        if (controls[i].id != static_cast<ControlId>(i)) return false;
    return controls.size() == static_cast<std::size_t>(ControlId::count);
}
static_assert(inOrder());

}  // namespace

const Control& controlOf(ControlId id) {
    return controls[static_cast<std::size_t>(id)];
}
