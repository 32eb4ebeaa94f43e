// Positions that come as signed numbers, as indices of the standard containers.
#pragma once

#include <concepts>
#include <cstddef>

// `position` is not negative.
constexpr std::size_t asIndex(std::signed_integral auto position) {
    return static_cast<std::size_t>(position);
}
