#include "model/addresstext.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <span>

namespace {

constexpr std::string_view blanks = " \t\r\n\v\f";

// Where the parts of an address end, in bytes.
constexpr std::size_t sixBytes[] = {6}, esiParts[] = {6, 7}, prefixParts[] = {13}, nsapParts[] = {13, 19, 20},
                      ipParts[] = {4};

struct KindRow {
    const char* name;
    std::span<const std::size_t> ends;
    bool hexadecimal = true;
    bool fromPrefix = false;   // begins with a network prefix
    bool hasSelector = false;  // the last byte
    bool evenGroups = false;   // longer groups are of one length, but for the selector

    std::size_t bytes() const { return ends.back(); }
};

// In the order of AddressKind.
constexpr KindRow kinds[] = {
    {.name = "A MAC address", .ends = sixBytes, .evenGroups = true},
    {.name = "An ESI", .ends = sixBytes, .evenGroups = true},
    {.name = "An ESI with its selector", .ends = esiParts, .hasSelector = true, .evenGroups = true},
    {.name = "A network prefix", .ends = prefixParts, .fromPrefix = true},
    {.name = "An ATM address", .ends = nsapParts, .fromPrefix = true, .hasSelector = true},
    {.name = "An IP address", .ends = ipParts, .hexadecimal = false},
};

struct Group {
    std::string_view digits;
    char before = 0;  // the separator; 0 before the first group
};

AddressReading refused(std::string reason) {
    return {{}, std::move(reason)};
}

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(blanks);
    return first == text.npos ? "" : text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

bool isBlank(char c) {
    return blanks.find(c) != blanks.npos;
}

// Cuts a text that neither begins nor ends with a blank at its separators; several blanks are one.
std::vector<Group> groupsOf(std::string_view text, std::string_view separators) {
    std::vector<Group> groups(1);
    std::size_t begin = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char c = isBlank(text[at]) ? ' ' : text[at];
        if (separators.find(c) == separators.npos) continue;
        groups.back().digits = text.substr(begin, at - begin);
        while (c == ' ' && isBlank(text[at + 1])) ++at;
        begin = at + 1;
        groups.push_back({{}, c});
    }
    groups.back().digits = text.substr(begin);
    return groups;
}

template <class Number> bool read(std::string_view digits, int base, Number& value) {
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value, base);
    return error == std::errc() && end == digits.data() + digits.size();
}

// The sentence about the first character that is no digit; empty if there is none.
std::string notDigits(const KindRow& kind, std::string_view digits) {
    const std::string_view all = kind.hexadecimal ? "0123456789abcdefABCDEF" : "0123456789";
    const auto at = digits.find_first_not_of(all);
    if (at == digits.npos) return {};
    const char c = digits[at];
    const std::string what = c > ' ' && c <= '~' ? std::string{'"', c, '"'} : "A character of the text";
    return what + (kind.hexadecimal ? " is no hexadecimal digit." : " is no digit.");
}

std::string wrongCount(const KindRow& kind, std::size_t right, std::size_t found, const char* unit) {
    return std::string(kind.name) + " has " + std::to_string(right) + " " + unit + "; this text has " +
           std::to_string(found) + ".";
}

AddressReading readNumbers(const KindRow& kind, std::string_view text) {
    std::vector<std::uint8_t> bytes;
    const std::vector<Group> groups = groupsOf(text, ".");
    for (const Group& group : groups) {
        if (std::string reason = notDigits(kind, group.digits); !reason.empty()) return refused(reason);
        if (group.digits.empty()) return refused("A number is missing between the dots.");
        std::uint8_t value = 0;
        const std::string number(group.digits.substr(0, 20));
        if (group.digits.size() > 3) return refused(number + " has more than 3 digits.");
        if (!read(group.digits, 10, value)) return refused(number + " is too large: at most 255.");
        bytes.push_back(value);
    }
    if (bytes.size() != kind.bytes()) return refused(wrongCount(kind, kind.bytes(), bytes.size(), "numbers"));
    return {bytes, {}};
}

bool wholeBytes(const KindRow& kind, const Group& group, const Group& first, bool byteByByte, bool lastByte) {
    if (byteByByte || (lastByte && kind.hasSelector && group.digits.size() == 2)) return true;
    return group.digits.size() % 2 == 0 && (!kind.evenGroups || group.digits.size() == first.digits.size());
}

void append(std::vector<std::uint8_t>& bytes, std::string_view digits) {
    const std::size_t step = std::min<std::size_t>(digits.size(), 2);
    for (; !digits.empty(); digits.remove_prefix(step)) {
        std::uint8_t value = 0;
        read(digits.substr(0, step), 16, value);
        bytes.push_back(value);
    }
}

// Within a part all separators are alike; between two parts stands any one, and "/" only before the selector.
std::string wrongSeparators(const KindRow& kind, std::span<const Group> groups,
                            std::span<const std::size_t> starts) {
    std::array<char, 3> standing{};
    for (std::size_t i = 1; i < groups.size(); ++i) {
        const char separator = groups[i].before;
        if (separator == '/' && !(kind.hasSelector && starts[i] + 1 == kind.bytes()))
            return "\"/\" stands only before a selector.";
        const auto end = std::ranges::upper_bound(kind.ends, starts[i]);
        const auto part = static_cast<std::size_t>(end - kind.ends.begin());
        if (part > 0 && kind.ends[part - 1] == starts[i]) continue;
        if (standing[part] && standing[part] != separator) return "The separators of this text differ.";
        standing[part] = separator;
    }
    return {};
}

AddressReading readGroups(const KindRow& kind, std::string_view text) {
    if (text.starts_with("0x") || text.starts_with("0X")) text.remove_prefix(2);
    const std::vector<Group> groups = groupsOf(text, " :-./");
    for (const Group& group : groups) {
        if (std::string reason = notDigits(kind, group.digits); !reason.empty()) return refused(reason);
        if (group.digits.empty()) return refused("Digits are missing at a separator.");
    }
    if (groups.size() == 1 && text.size() != 2 * kind.bytes())
        return refused(wrongCount(kind, 2 * kind.bytes(), text.size(), "digits"));

    const bool byteByByte =
        std::ranges::all_of(groups, [](const Group& group) { return group.digits.size() <= 2; });
    std::vector<std::uint8_t> bytes;
    std::vector<std::size_t> starts;
    for (const Group& group : groups) {
        starts.push_back(bytes.size());
        if (!wholeBytes(kind, group, groups[0], byteByByte, bytes.size() + 1 == kind.bytes()))
            return refused("The groups of digits are not those of an address.");
        append(bytes, group.digits);
    }
    if (bytes.size() != kind.bytes()) return refused(wrongCount(kind, kind.bytes(), bytes.size(), "bytes"));
    if (std::string reason = wrongSeparators(kind, groups, starts); !reason.empty()) return refused(reason);
    if (kind.fromPrefix && bytes[0] < 0x10) return refused("A network prefix does not begin with 0.");
    return {bytes, {}};
}

}  // namespace

AddressReading ReadAddress(AddressKind kind, std::string_view text) {
    const KindRow& row = kinds[static_cast<std::size_t>(kind)];
    const std::string_view whole = trimmed(text);
    if (whole.empty()) return refused("There is no address in this text.");
    return row.hexadecimal ? readGroups(row, whole) : readNumbers(row, whole);
}
