#include "sim/fieldtext.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <fmt/format.h>

namespace sim {

namespace {

// The form of the tool's windows.
std::string esiText(ConstBytes bytes) {
    return fmt::format("{:02x}-{:02x}", fmt::join(bytes.first(6), ":"), bytes[6]);
}

std::optional<std::vector<std::uint8_t>> hexBytes(std::string_view text, std::size_t count) {
    std::string digits;
    for (const char c : text) {
        if (std::isxdigit(static_cast<unsigned char>(c)))
            digits += c;
        else if (std::string_view(":-/. ").find(c) == std::string_view::npos)
            return std::nullopt;
    }
    if (digits.size() != 2 * count) return std::nullopt;
    std::vector<std::uint8_t> bytes(count);
    for (std::size_t i = 0; i < count; ++i)
        std::from_chars(digits.data() + 2 * i, digits.data() + 2 * i + 2, bytes[i], 16);
    return bytes;
}

std::optional<std::vector<std::uint8_t>> ipBytes(std::string_view text) {
    std::vector<std::uint8_t> bytes;
    const char* at = text.data();
    const char* const end = at + text.size();
    while (bytes.size() < 4) {
        std::uint8_t value = 0;
        const auto [next, error] = std::from_chars(at, end, value);
        if (error != std::errc{}) return std::nullopt;
        bytes.push_back(value);
        at = next;
        if (bytes.size() < 4 && (at == end || *at++ != '.')) return std::nullopt;
    }
    if (at != end) return std::nullopt;
    return bytes;
}

}  // namespace

std::optional<std::int64_t> wholeNumber(std::string_view text) {
    const bool minus = text.starts_with('-');
    if (minus) text.remove_prefix(1);
    const bool hex = text.starts_with("0x") || text.starts_with("0X");
    if (hex) text.remove_prefix(2);
    // Unsigned, so that a second sign is no digit; 32 bits are the most that a field holds.
    std::uint32_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, hex ? 16 : 10);
    if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
    return minus ? -std::int64_t{value} : std::int64_t{value};
}

std::string fieldText(const Field& field, ConstBytes bytes) {
    switch (field.kind) {
    case Kind::Number:
    case Kind::Signed:
        return fmt::format("{}", getNumber(bytes));
    case Kind::Text:
        return {bytes.begin(), std::find(bytes.begin(), bytes.end(), 0)};
    case Kind::Mac:
        return fmt::format("{:02x}", fmt::join(bytes, ":"));
    case Kind::Esi:
        return esiText(bytes);
    case Kind::Atm:
        return fmt::format("{:02x} {}", fmt::join(bytes.first(13), ":"), esiText(bytes.subspan(13)));
    case Kind::Ip:
        break;
    }
    return fmt::format("{}", fmt::join(bytes, "."));
}

std::optional<std::vector<std::uint8_t>> fieldBytes(const Field& field, std::string_view text) {
    switch (field.kind) {
    case Kind::Number:
    case Kind::Signed: {
        const std::optional<std::int64_t> value = wholeNumber(text);
        const std::int64_t limit = std::int64_t{1} << 8 * field.width;
        const std::int64_t least = field.kind == Kind::Signed ? -limit / 2 : 0;
        if (!value || *value >= limit || *value < least) return std::nullopt;
        std::vector<std::uint8_t> bytes(field.width);
        putNumber(bytes, static_cast<std::uint64_t>(*value));
        return bytes;
    }
    case Kind::Text: {
        if (text.size() >= field.width) return std::nullopt;
        std::vector<std::uint8_t> bytes(text.begin(), text.end());
        bytes.resize(field.width);
        return bytes;
    }
    case Kind::Ip:
        return ipBytes(text);
    default:
        return hexBytes(text, field.width);
    }
}

std::string_view kindText(Kind kind) {
    switch (kind) {
    case Kind::Number:
        return "number";
    case Kind::Signed:
        return "number, also a negative one";
    case Kind::Text:
        return "text";
    case Kind::Mac:
        return "address of 6 bytes";
    case Kind::Esi:
        return "ESI and selector, 7 bytes";
    case Kind::Atm:
        return "ATM address, 20 bytes";
    case Kind::Ip:
        break;
    }
    return "dotted IP address";
}

}  // namespace sim
