#include "driver/dai_api.h"

#include "platform/device.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fmt/ostream.h>

char devbase[] = "/dev/li";

namespace {

constexpr int daiCommand = 0x4C00;  // the ioctl command of this interface's messages
constexpr std::size_t sizeAt = 6, respAt = 14;

struct ErrorCode {
    int systemError;
    int code;  // 0 ends the table
};

// The driver's own host numbers ENOBUFS 132; other hosts number it differently.
constexpr std::array<ErrorCode, 9> s2dt{{{ENOENT, 201},
                                         {ENXIO, 201},
                                         {ENODEV, 201},
                                         {EACCES, 203},
                                         {EINVAL, 206},
                                         {ENOBUFS, 205},
                                         {132, 205},
                                         {EBUSY, 202},
                                         {0, 0}}};
constexpr int otherError = 207;

void put16(std::span<std::uint8_t> wire, std::size_t offset, unsigned value) {
    wire[offset] = static_cast<std::uint8_t>(value);
    wire[offset + 1] = static_cast<std::uint8_t>(value >> 8);
}

std::uint16_t get16(std::span<const std::uint8_t> wire, std::size_t offset) {
    return static_cast<std::uint16_t>(wire[offset] | wire[offset + 1] << 8);
}

}  // namespace

void req_param_t::pack(std::span<std::uint8_t, wireSize> wire) const {
    put16(wire, 0, Prim);
    put16(wire, 2, Type);
    wire[4] = Link;
    wire[5] = Unit;
    put16(wire, sizeAt, Size);
    put16(wire, 8, SzIO);
    put16(wire, 10, RowM);
    put16(wire, 12, NRow);
    put16(wire, respAt, Resp);
}

req_param_t req_param_t::unpack(std::span<const std::uint8_t, wireSize> wire) {
    return {.Prim = get16(wire, 0),
            .Type = get16(wire, 2),
            .Link = wire[4],
            .Unit = wire[5],
            .Size = get16(wire, sizeAt),
            .SzIO = get16(wire, 8),
            .RowM = get16(wire, 10),
            .NRow = get16(wire, 12),
            .Resp = get16(wire, respAt)};
}

std::ostream& operator<<(std::ostream& out, const req_param_t& header) {
    fmt::print(out, "Prim:{} Type:{} Link:{} Unit:{} Size:{} SzIO:{} RowM:{} NRow:{} Resp:{}", header.Prim,
               header.Type, header.Link, header.Unit, header.Size, header.SzIO, header.RowM, header.NRow,
               header.Resp);
    return out;
}

int dai_open(int /*context*/, int oflag, int& descriptorOut) {
    descriptorOut = platform::device().open(devbase, oflag);
    return descriptorOut < 0 ? -1 : 0;
}

int dai_req(int descriptor, std::span<std::uint8_t> message, std::size_t* received) {
    if (received) *received = 0;
    if (message.size() < req_param_t::wireSize) return -1;
    const auto fail = [message](int systemError) {
        put16(message, respAt, static_cast<unsigned>(dai_syserr(systemError)));
        return -1;
    };
    const std::uint16_t size = get16(message, sizeAt);
    if (size < req_param_t::wireSize || size > message.size()) return fail(EINVAL);
    if (descriptor <= 0) return fail(ENXIO);

    platform::strioctl block{.ic_cmd = daiCommand,
                             .ic_timout = 0,
                             .ic_len = size,
                             .ic_dp = reinterpret_cast<char*>(message.data())};
    if (platform::device().streamsIoctl(descriptor, platform::I_STR, block) < 0) return fail(errno);
    if (received) *received = static_cast<std::size_t>(std::max(block.ic_len, 0));
    errno = 0;
    return get16(message, respAt) == 0 ? 0 : -1;
}

int dai_close(int /*context*/, int descriptor) {
    if (descriptor > 0) platform::device().close(descriptor);
    return 0;
}

int dai_syserr(int systemError) {
    for (const ErrorCode* entry = s2dt.data(); entry->code; ++entry)
        if (entry->systemError == systemError) return entry->code;
    return otherError;
}
