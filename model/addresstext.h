// Reads addresses as people and programs write them. A text is one whole address of the kind asked for, or it
// is refused with the reason: nothing is guessed, cut or filled up.
//
// Hexadecimal addresses are digits without separators, with "0x" before them or not; or one or two digits a
// byte; or groups of whole bytes, which in a MAC address and an ESI are of one length. Groups are separated
// by
// ":", "-", "." or blanks, of one kind within each of the parts that an address has (prefix, ESI, selector).
// The selector may also stand behind "/". IP addresses are four decimal numbers up to 255. Blanks around an
// address do not count.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

enum class AddressKind {
    mac,          // 6 bytes
    esi,          // 6
    esiSelector,  // 7
    prefix,       // 13, the first digit not 0
    nsap,         // 20: prefix, ESI, selector
    ip,           // 4
};

struct AddressReading {
    std::vector<std::uint8_t> bytes;  // in the order of the text; none when it was refused
    std::string reason;               // a sentence for the user

    // The bytes of an address that was read and has N of them.
    template <std::size_t N> std::array<std::uint8_t, N> as() const {
        std::array<std::uint8_t, N> array{};
        std::copy_n(bytes.begin(), std::min(N, bytes.size()), array.begin());
        return array;
    }
};

AddressReading ReadAddress(AddressKind kind, std::string_view text);
