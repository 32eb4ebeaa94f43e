// The table of change requests, which change the running driver. One row per request.
#pragma once

#include <cstdint>

enum class RequestId {
    lecStart,
    lecStop,
    bridgedPvcAdd,
    bridgedPvcDelete,
    bridgedPvcModify,
    lesStart,
    lesStop,
    lecsLoad,
    lecsStop,
    lecsAddClient,
    lecsDeleteClient,
    lecsGo,
    ipStart,
    ipStop,
    routedPvcAdd,
    routedPvcDelete,
    routedPvcModify,
    traceSwitch,
    count  // of the requests
};

struct Request {
    RequestId id;
    std::uint16_t prim;  // header fields that select the request
    std::uint16_t type;
    std::uint16_t size;        // bytes of the message, header included
    std::uint16_t input;       // leading bytes of it that the driver reads
    const char* trace;         // line on the debug log before the request
    bool bytesTraced = false;  // the data follows it, in hexadecimal
};

const Request& requestOf(RequestId id);
