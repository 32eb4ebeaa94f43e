// The bytes of a driver message as the driver's side packs and unpacks them. Little-endian throughout.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace sim {

using Bytes = std::span<std::uint8_t>;
using ConstBytes = std::span<const std::uint8_t>;
using MacBytes = std::array<std::uint8_t, 6>;
using IpBytes = std::array<std::uint8_t, 4>;
using AtmBytes = std::array<std::uint8_t, 20>;

// A number in as many bytes as the span has (at most 8); what does not fit is cut off.
void putNumber(Bytes out, std::uint64_t value);
std::uint64_t getNumber(ConstBytes in);

// As much of `value` as `out` has room for, the rest of `out` zero.
void putBytes(Bytes out, ConstBytes value);

constexpr std::size_t headerSize = 16;

struct Header {
    std::uint16_t prim = 0, type = 0;
    std::uint8_t link = 0, unit = 0;
    std::uint16_t size = 0;  // of the whole message
    std::uint16_t szIO = 0;  // leading bytes that are input
    std::uint16_t rowM = 0;  // first row wanted, from 1; in a reply the next one
    std::uint16_t nRow = 0;  // rows wanted; in a reply rows delivered
    std::uint16_t resp = 0;
};

Header readHeader(ConstBytes message);  // `message` holds at least headerSize bytes
void writeHeader(const Header& header, Bytes message);

}  // namespace sim
