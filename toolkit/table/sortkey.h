// What the rows of a table are sorted by, and told apart by: a number, or up to 16 bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

// Keys of one column are of one kind. One that is not known comes after all others, in either direction.
struct zSortKey {
    std::uint64_t high = 0, low = 0;
    bool known = false;

    bool operator==(const zSortKey&) const = default;
};

constexpr zSortKey zNumberKey(std::int64_t number) {
    constexpr std::uint64_t sign = std::uint64_t{1} << 63U;
    return {static_cast<std::uint64_t>(number) ^ sign, 0, true};
}

// The first 16; what is shorter comes before what begins with it.
constexpr zSortKey zBytesKey(std::span<const std::uint8_t> bytes) {
    constexpr std::size_t half = 8;
    zSortKey key{0, 0, true};
    for (std::size_t i = 0; i < 2 * half && i < bytes.size(); ++i) {
        std::uint64_t& word = i < half ? key.high : key.low;
        word |= std::uint64_t{bytes[i]} << 8 * (half - 1 - i % half);
    }
    return key;
}

// Likewise, of its bytes; upper and lower case of letters are the same.
constexpr zSortKey zTextKey(std::string_view text) {
    std::uint8_t bytes[16] = {};
    for (std::size_t i = 0; i < sizeof bytes && i < text.size(); ++i) {
        const char c = text[i];
        bytes[i] = static_cast<std::uint8_t>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
    }
    return zBytesKey(bytes);
}
