#include "config/valuerules.h"

#include "platform/safetext.h"

#include <charconv>
#include <fmt/format.h>

namespace {

constexpr Severity error = Severity::error, warning = Severity::warning;
using Kind = RawValue::Kind;

constexpr std::size_t shownLength = 80;

std::string quoted(std::string_view text) {
    return fmt::format("\"{}\"", platform::escaped(text.substr(0, shownLength)));
}

// A whole number; one beyond 64 bits is the greatest. Nothing: it is none.
std::optional<long long> numberIn(std::string_view text) {
    if (text.starts_with('+')) text.remove_prefix(1);
    long long number = 0;
    const char* end = text.data() + text.size();
    const auto [stopped, fault] = std::from_chars(text.data(), end, number);
    if (stopped != end || fault == std::errc::invalid_argument) return {};
    return fault == std::errc() ? number : std::numeric_limits<long long>::max();
}

std::string withoutValue(const RawValue& value) {
    const bool needed = value.kind == Kind::number || value.kind == Kind::address;
    return needed && value.text.empty() ? "The key has no value" : "";
}

std::string noNumber(const RawValue& value) {
    if (value.kind != Kind::number || numberIn(value.text)) return {};
    return fmt::format("{} is no number", quoted(value.text));
}

std::string noCode(const RawValue& value) {
    if (value.codes.empty()) return {};
    const auto number = numberIn(value.text);
    std::string known;
    for (const CodeName& code : value.codes) {
        if (number == code.code) return {};
        known += fmt::format("{}{} = {}", known.empty() ? "" : ", ", code.code, code.words);
    }
    return fmt::format("{} means nothing here: {}", platform::escaped(value.text), known);
}

std::string outOfRange(const RawValue& value) {
    if (value.kind != Kind::number || !value.codes.empty()) return {};
    const auto number = numberIn(value.text);
    if (number && *number >= 0 && *number <= value.most) return {};
    return fmt::format("{} is outside 0 to {}", platform::escaped(value.text), value.most);
}

std::string notWhole(const RawValue& value) {
    const bool whole = value.text.size() == value.digits &&
                       value.text.find_first_not_of("0123456789abcdefABCDEF") == std::string_view::npos;
    if (value.kind != Kind::address || whole) return {};
    return fmt::format("{} is not {} hexadecimal digits", quoted(value.text), value.digits);
}

std::string longName(const RawValue& value) {
    const auto fits = [](char c) { return c >= '!' && c <= 'z'; };
    if (value.kind != Kind::name || value.text.size() <= value.readable || !fits(value.text[value.readable]))
        return {};
    return fmt::format("Of an ELAN name of {} characters only {} are read: {}", value.text.size(),
                       value.readable, quoted(value.text.substr(0, value.readable)));
}

std::string cut(const RawValue& value) {
    if (value.text.size() <= value.readable) return {};
    return fmt::format("Of {} only the first {} characters are read", quoted(value.text), value.readable);
}

constexpr struct {
    int number;
    Severity severity;
    std::string (*complaint)(const RawValue& value);  // what it says is empty where it holds
} rules[] = {
    {116, warning,
     [](const RawValue& v) { return std::string(v.there ? "" : "The section has no such key"); }},
    {117, error, withoutValue},
    {117, error, noNumber},
    {117, error, noCode},
    {117, error, outOfRange},
    {117, error, notWhole},
    {112, warning, longName},
    {117, error, cut},
};

}  // namespace

std::optional<Finding> CheckValue(const RawValue& value) {
    for (const auto& rule : rules)
        if (std::string complaint = rule.complaint(value); !complaint.empty())
            return Finding{rule.number, rule.severity, "", std::move(complaint), ""};
    return {};
}
