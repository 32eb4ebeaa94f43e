// Positions that come as signed numbers or as enumerators, as indices of the standard containers.
#pragma once

#include <concepts>
#include <cstddef>
#include <type_traits>

// `position` is not negative.
template <class Position>
requires std::signed_integral<Position> || std::is_enum_v<Position>
constexpr std::size_t asIndex(Position position) {
    return static_cast<std::size_t>(position);
}
