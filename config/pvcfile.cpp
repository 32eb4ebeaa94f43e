#include "config/pvcfile.h"

#include "config/listlines.h"
#include "platform/debuglog.h"

#include <algorithm>
#include <charconv>
#include <fmt/compile.h>
#include <fmt/format.h>
#include <limits>
#include <sstream>
#include <string>
#include <utility>

using namespace listlines;

namespace {

auto& addressOf(AtmRoutedPvc& pvc) {
    return pvc.ip;
}
auto& addressOf(AtmBridgedPvc& pvc) {
    return pvc.mac;
}
const auto& addressOf(const AtmRoutedPvc& pvc) {
    return pvc.ip;
}
const auto& addressOf(const AtmBridgedPvc& pvc) {
    return pvc.mac;
}
bool wellFormed(const ipAddress&, std::string_view text) {
    return isDottedDecimal(text);
}
bool wellFormed(const macAddress&, std::string_view text) {
    return isMacText(text);
}

// Lines of a stream, as TextLines gives those of a text.
class StreamLines {
  public:
    explicit StreamLines(std::istream& in) : in_(in) {}

    bool next(std::string_view& line) {
        std::getline(in_, held_);
        line = std::string_view(held_).substr(0, lineLimit);
        return in_.good();
    }

  private:
    std::istream& in_;
    std::string held_;
};

// A number beyond 32 bits becomes the nearest; without digits the field stays as it was.
void readNumber(std::string_view text, std::int32_t& number) {
    constexpr long long least = std::numeric_limits<std::int32_t>::min(),
                        most = std::numeric_limits<std::int32_t>::max();
    text = trimmed(text);
    if (text.starts_with('+')) text.remove_prefix(1);
    long long value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc::result_out_of_range)
        value = text.starts_with('-') ? least : most;
    else if (error != std::errc())
        return;
    number = static_cast<std::int32_t>(std::clamp(value, least, most));
}

// Of the nearest 32-bit number the low 16 bits count. False if it has more: it is neither from 0 to 65535
// nor, as VCIs are written, from -32768 to -1.
bool readVci(std::string_view text, std::uint16_t& vci) {
    std::int32_t number = vci;
    readNumber(text, number);
    vci = static_cast<std::uint16_t>(number);
    return number >= std::numeric_limits<std::int16_t>::min() &&
           number <= std::numeric_limits<std::uint16_t>::max();
}

// Reads an address that is well-formed.
void take(ipAddress& address, std::string_view text) {
    address = text;
}
void take(macAddress& address, std::string_view digits) {
    for (std::size_t i = 0; i < address.bytes().size(); ++i)
        address.bytes()[i] = static_cast<std::uint8_t>((atox(digits[2 * i]) << 4) + atox(digits[2 * i + 1]));
}

template <class Address> bool readAddress(std::string_view text, Address& address) {
    const std::string_view word = trimmed(text);
    if (wellFormed(address, word)) {
        take(address, word);
        return true;
    }
    static std::istringstream in;  // making one costs more than reading from it
    in.clear();
    in.str(std::string(text));
    in >> address;
    return false;
}

// The values of a record that differ from what the file says.
struct Doubts {
    bool address = false;  // it does not have the form of one
    std::string vci;       // it has more than 16 bits
};

template <class Pvc> void readField(std::string_view line, Pvc& pvc, Doubts& doubts) {
    line = line.substr(0, line.find('#'));
    const std::size_t equals = line.find('=');
    const std::string_view value = equals == std::string_view::npos ? "" : line.substr(equals + 1);
    // A quick test before searching for a key: most lines contain only one capital letter, the key's first.
    std::uint32_t capitals = 0;
    for (const char c : line)
        if (c >= 'A' && c <= 'Z') capitals |= 1U << (c - 'A');
    const auto has = [&](std::string_view key) {
        return (capitals >> (key[0] - 'A') & 1) && line.find(key) != std::string_view::npos;
    };
    if (has("VC")) doubts.vci = readVci(value, pvc.vci) ? "" : trimmed(value);
    if (has("Addr")) doubts.address |= !readAddress(value, addressOf(pvc));
    if (has("Encap")) readNumber(value, pvc.encapsulation);
    if (has("Bcast")) readNumber(value, pvc.broadcast);
    if (has("Rate")) readNumber(value, pvc.rate);
}

// Reads the next record. False when the lines end before it does.
template <class Lines, class Pvc> bool readPvc(Lines& lines, Pvc& pvc, Doubts& doubts) {
    doubts = {};
    std::string_view line;
    do {
        if (!lines.next(line)) return false;
    } while (!line.starts_with("[PVC"));
    for (int i = 0; i < recordLines; ++i) {
        const bool whole = lines.next(line);
        readField(line, pvc, doubts);
        if (!whole) return false;
    }
    return true;
}

template <class Pvc> std::istream& readPvc(std::istream& in, Pvc& pvc) {
    StreamLines lines(in);
    Doubts doubts;
    if (in.good()) readPvc(lines, pvc, doubts);
    return in;
}

// As the addresses' stream forms, which take more time.
void append(fmt::memory_buffer& out, const macAddress& address) {
    for (const std::uint8_t byte : address.bytes())
        fmt::format_to(fmt::appender(out), FMT_COMPILE("{:02x}"), byte);
}
void append(fmt::memory_buffer& out, const ipAddress& address) {
    const auto& bytes = address.bytes();
    fmt::format_to(fmt::appender(out), FMT_COMPILE("{}.{}.{}.{}"), bytes[0], bytes[1], bytes[2], bytes[3]);
}

template <class Pvc> void appendPvc(fmt::memory_buffer& out, const Pvc& pvc) {
    fmt::format_to(fmt::appender(out), FMT_COMPILE("[PVC\n\tVC    ={}\t#VC index\n\tAddr  ="),
                   static_cast<std::int16_t>(pvc.vci));
    append(out, addressOf(pvc));
    fmt::format_to(fmt::appender(out),
                   FMT_COMPILE("\t# Format:  0000778899aa=MAC 123.123.123.123=IP\n"
                               "\tEncap ={}\t# 0=Null 1=LLC\n"
                               "\tBcast ={}\t# For Bridged PVC only; 1=Broadcast 0=Non-Broadcast\n"
                               "\tRate  ={}\t# MB/s\n"
                               "]\n"),
                   pvc.encapsulation, pvc.broadcast, pvc.rate);
}
void append(fmt::memory_buffer& out, const AtmRoutedPvc& pvc) {
    appendPvc(out, pvc);
}
void append(fmt::memory_buffer& out, const AtmBridgedPvc& pvc) {
    appendPvc(out, pvc);
}
void append(fmt::memory_buffer& out, const esiSelector& client) {
    out.append(std::string_view(client.GetFEsiSelector()));
}

template <class Pvc> std::ostream& writePvc(std::ostream& out, const Pvc& pvc) {
    fmt::memory_buffer text;
    appendPvc(text, pvc);
    return out << std::string_view(text.data(), text.size());
}

void noteMalformed(std::string_view name, std::size_t record) {
    tvlog << fmt::format("Malformed Address In - {} Record {}", name, record) << std::endl;
}

template <class Pvc> void parsePvcs(std::string_view text, std::string_view name, std::vector<Pvc>& list) {
    list.clear();
    TextLines lines(text);
    Pvc scratch{};
    for (Doubts doubts; readPvc(lines, scratch, doubts);) {
        list.push_back(scratch);
        if (doubts.address) noteMalformed(name, list.size());
        if (!doubts.vci.empty())
            tvlog << fmt::format("VCI Beyond 16 Bits In - {} Record {} Value {}", name, list.size(),
                                 doubts.vci)
                  << std::endl;
    }
}

}  // namespace

std::ostream& operator<<(std::ostream& out, const AtmRoutedPvc& pvc) {
    return writePvc(out, pvc);
}

std::ostream& operator<<(std::ostream& out, const AtmBridgedPvc& pvc) {
    return writePvc(out, pvc);
}

std::istream& operator>>(std::istream& in, AtmRoutedPvc& pvc) {
    return readPvc(in, pvc);
}

std::istream& operator>>(std::istream& in, AtmBridgedPvc& pvc) {
    return readPvc(in, pvc);
}

void parseList(std::string_view text, std::string_view name, std::vector<AtmRoutedPvc>& list) {
    parsePvcs(text, name, list);
}

void parseList(std::string_view text, std::string_view name, std::vector<AtmBridgedPvc>& list) {
    parsePvcs(text, name, list);
}

void parseList(std::string_view text, std::string_view name, std::vector<esiSelector>& list) {
    list.clear();
    std::istringstream in{std::string(text)};
    esiSelector client;
    for (std::size_t from = 0; (in >> client).good();) {
        const auto to = static_cast<std::size_t>(in.tellg());
        list.push_back(client);
        if (!isClientText(trimmed(text.substr(from, to - from)))) noteMalformed(name, list.size());
        from = to;
    }
}

template <class Entry> std::string listText(const std::vector<Entry>& list) {
    // A client's line, or a PVC's lines and a blank one behind them.
    fmt::memory_buffer out;
    for (const Entry& entry : list) {
        append(out, entry);
        out.push_back('\n');
    }
    return fmt::to_string(out);
}

template std::string listText(const std::vector<AtmRoutedPvc>&);
template std::string listText(const std::vector<AtmBridgedPvc>&);
template std::string listText(const std::vector<esiSelector>&);
