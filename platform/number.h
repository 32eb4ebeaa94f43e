// Numbers as texts.
#pragma once

#include <charconv>
#include <concepts>
#include <optional>
#include <string_view>
#include <system_error>

namespace platform {

// The decimal number that a text is, as a whole; nothing: it is none, or does not fit.
template <std::integral Number> std::optional<Number> wholeNumber(std::string_view text) {
    Number number = 0;
    const char* end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stopped == end ? std::optional(number) : std::nullopt;
}

}  // namespace platform
