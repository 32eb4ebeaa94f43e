// Texts that are numbers.
#pragma once

#include <charconv>
#include <concepts>
#include <optional>
#include <string_view>
#include <system_error>

namespace platform {

// The decimal number that the whole text stands for; nothing: it is none, or one that does not fit.
template <class Number> std::optional<Number> number(std::string_view text) {
    Number value = 0;
    const char* end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), end, value);
    return error == std::errc() && stopped == end ? std::optional(value) : std::nullopt;
}

template <std::integral Number> std::optional<Number> wholeNumber(std::string_view text) {
    return number<Number>(text);
}

}  // namespace platform
