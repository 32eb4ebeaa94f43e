// The data of change requests: the driver's structures, filled from the configuration records. They are
// stored as the bytes that are sent: numbers little-endian, unused bytes zero.
#pragma once

#include "model/tvdatbuf.h"

#include <array>
#include <cstddef>
#include <cstdint>

template <std::size_t Size> struct RequestStruct {
    static constexpr std::size_t size = Size;

    std::array<std::uint8_t, Size> bytes{};
};

// A LAN Emulation Client's settings.
struct lecReqStruct : RequestStruct<72> {
    lecReqStruct& operator=(const AtmLEC& record);
};

// A LAN Emulation Server's settings.
struct lesReqStruct : RequestStruct<52> {
    lesReqStruct& operator=(const AtmLES& record);
};

// The LAN Emulation Configuration Server's settings, or one client that it maps to an emulated LAN.
struct lecs_req : RequestStruct<44> {
    lecs_req& operator=(const AtmLECS& record);

    // `les`: index of the LES whose ELAN the client belongs to; 0 where a mapping is deleted.
    static lecs_req mapping(const esiSelector& client, std::uint8_t les);
};
using lecsReqStruct = lecs_req;

// The Classical IP client's settings (RFC 1577). Its IP addresses are numbers, least significant byte first.
struct ip1577ReqStruct : RequestStruct<40> {
    ip1577ReqStruct& operator=(const AtmIP1577& record);
};

// PVCs. The VCI and the low byte of each flag are sent, the rate is not. A routed PVC's IP address is in
// network byte order.
struct rtdPvcReqStruct : RequestStruct<8> {
    rtdPvcReqStruct& operator=(const AtmRoutedPvc& record);
};
struct bdgPvcReqStruct : RequestStruct<12> {
    bdgPvcReqStruct& operator=(const AtmBridgedPvc& record);
};
