// Field values as commands write and show them.
#pragma once

#include "sim/requests.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sim {

// The field's bytes as text: numbers in decimal, addresses in their usual form, text up to its NUL.
std::string fieldText(const Field& field, ConstBytes bytes);

// The bytes of a value: decimal or 0x numbers that fit the field, negative ones where it has a sign; all
// digits of an address, with or without separators; four dotted numbers; text that leaves room for its NUL.
// Nothing for any other text.
std::optional<std::vector<std::uint8_t>> fieldBytes(const Field& field, std::string_view text);

// What such a value looks like, for messages.
std::string_view kindText(Kind kind);

// A whole decimal or 0x number, or nothing.
std::optional<std::int64_t> wholeNumber(std::string_view text);

}  // namespace sim
