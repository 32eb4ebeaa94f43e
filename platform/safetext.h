// Texts of any bytes as printable ASCII, so that none can end a line, forge a field or reach a terminal.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace platform {

// As \xNN (two lower case digits) each byte that is not printable ASCII, and as \\ a backslash.
std::string escaped(std::string_view text);

// The text of which escaped() made this one. A backslash that begins neither \\ nor \xNN stays.
std::string unescaped(std::string_view text);

// The longest value of a field, escapes included: with a few of them a line stays near the 1024 bytes that
// older log daemons pass on.
constexpr std::size_t longestField = 240;

// A value for lines of the form name=value, separated by blanks. A text of printable ASCII without blank, '='
// '"' and '\' stands as it is. Any other, the empty one too, stands between double quotes, escaped, and with
// \" for a double quote in it. One that would be longer than longestField is cut and ends in "\...", which no
// escape begins with.
std::string fieldValue(std::string_view text);

}  // namespace platform
