// Bytes of messages, as tests write and read them.
#pragma once

#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

using ByteVector = std::vector<std::uint8_t>;

// "81 00 adde": pairs of hexadecimal digits, blanks ignored.
inline ByteVector hexBytes(std::string_view text) {
    std::string digits;
    for (const char c : text)
        if (c != ' ') digits += c;
    ByteVector bytes;
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2)
        bytes.push_back(static_cast<std::uint8_t>(std::stoi(digits.substr(i, 2), nullptr, 16)));
    return bytes;
}

// A packet of the device's socket: words of 32 bits, and bytes behind them.
inline ByteVector packet(std::initializer_list<std::int32_t> words, std::span<const std::uint8_t> rest = {}) {
    ByteVector bytes(words.size() * sizeof(std::int32_t));
    std::memcpy(bytes.data(), words.begin(), bytes.size());
    bytes.insert(bytes.end(), rest.begin(), rest.end());
    return bytes;
}

// A number of `width` bytes, the least significant one first. What lies behind the end throws.
inline std::uint64_t little(std::span<const std::uint8_t> bytes, std::size_t offset, std::size_t width) {
    if (bytes.size() < offset + width) throw std::out_of_range("no such bytes");
    std::uint64_t value = 0;
    for (std::size_t i = offset + width; i-- > offset;) value = value << 8 | bytes[i];
    return value;
}

inline int wordAt(std::span<const std::uint8_t> bytes, std::size_t offset) {
    return static_cast<int>(little(bytes, offset, 2));
}
