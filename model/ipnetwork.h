// IPv4 addresses as numbers, and the network of a client.
#pragma once

#include "model/tvdatbuf.h"

#include <cstdint>
#include <optional>
#include <string_view>

// In the order of their bits; nothing: the text is no address.
std::optional<std::uint32_t> AddressNumber(std::string_view text);
std::uint32_t AddressNumber(const ipAddress& ip);

// Ones first, then zeros.
bool IsSubnetMask(std::uint32_t mask);

struct IpNetwork {
    std::uint32_t own, mask;

    // Nothing if the address is none, or 0.0.0.0, or the mask is none.
    static std::optional<IpNetwork> of(const AtmIP1577& client);
    bool has(std::uint32_t address) const { return (address & mask) == (own & mask); }
};
