#include "platform/safetext.h"

#include <algorithm>
#include <charconv>
#include <fmt/format.h>

namespace platform {

namespace {

bool printable(char c) {
    return c >= ' ' && c <= '~';
}

std::string escapedByte(char c) {
    if (c == '\\') return "\\\\";
    if (printable(c)) return {c};
    return fmt::format("\\x{:02x}", static_cast<unsigned char>(c));
}

// The byte of the two digits at `at`, or -1.
int hexByte(std::string_view text, std::size_t at) {
    unsigned value = 0;
    if (text.size() < at + 2) return -1;
    const char* end = text.data() + at + 2;
    const auto [stopped, error] = std::from_chars(text.data() + at, end, value, 16);
    return error == std::errc() && stopped == end ? static_cast<int>(value) : -1;
}

}  // namespace

std::string escaped(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (const char c : text) result += escapedByte(c);
    return result;
}

std::string unescaped(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
        result += text[at];
        if (text[at] != '\\' || at + 1 == text.size()) continue;
        if (text[at + 1] == '\\') {
            ++at;
        } else if (const int byte = text[at + 1] == 'x' ? hexByte(text, at + 2) : -1; byte >= 0) {
            result.back() = static_cast<char>(byte);
            at += 3;
        }
    }
    return result;
}

std::string fieldValue(std::string_view text) {
    constexpr std::string_view mark = "\\...";
    std::string result;
    std::size_t beforeMark = 0;  // where the mark would begin
    bool quoted = text.empty();
    for (const char c : text) {
        const std::string piece = c == '"' ? "\\\"" : escapedByte(c);
        quoted = quoted || piece.size() > 1 || c == ' ' || c == '=';
        if (result.size() + piece.size() > longestField) {
            result.replace(beforeMark, std::string::npos, mark);
            quoted = true;
            break;
        }
        result += piece;
        if (result.size() <= longestField - mark.size()) beforeMark = result.size();
    }
    return quoted ? '"' + result + '"' : result;
}

}  // namespace platform
