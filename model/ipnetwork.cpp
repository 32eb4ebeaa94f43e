#include "model/ipnetwork.h"

#include "model/addresstext.h"

#include <bit>

std::optional<std::uint32_t> AddressNumber(std::string_view text) {
    const AddressReading ip = ReadAddress(AddressKind::ip, text);
    if (!ip.reason.empty()) return {};
    std::uint32_t bits = 0;
    for (const std::uint8_t byte : ip.bytes) bits = bits << 8 | byte;
    return bits;
}

std::uint32_t AddressNumber(const ipAddress& ip) {
    std::uint32_t bits = 0;
    for (const std::uint8_t byte : ip.bytes()) bits = bits << 8 | byte;
    return bits;
}

bool IsSubnetMask(std::uint32_t mask) {
    return std::countl_one(mask) + std::countr_zero(mask) >= 32;
}

std::optional<IpNetwork> IpNetwork::of(const AtmIP1577& client) {
    const auto own = AddressNumber(client.ip.view()), mask = AddressNumber(client.subnetMask.view());
    if (!own || *own == 0 || !mask || !IsSubnetMask(*mask)) return {};
    return IpNetwork{*own, *mask};
}
