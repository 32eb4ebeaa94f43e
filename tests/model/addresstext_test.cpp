#include "model/addresstext.h"

namespace {

std::string digits(const std::vector<std::uint8_t>& bytes) {
    std::string text;
    for (const std::uint8_t byte : bytes) text += fmt::format("{:02x}", byte);
    return text;
}

constexpr const char* macDigits = "00204000b109";
constexpr const char* esiDigits = "00204000b10907";
constexpr const char* prefixDigits = "47000580ffe1000000f21a26d8";
constexpr const char* nsapDigits = "47000580ffe1000000f21a26d80020d4144ab800";

struct Spelling {
    AddressKind kind;
    const char* text;
    const char* read;  // the digits, or the sentence of the refusal
};
using enum AddressKind;
const Spelling spellings[] = {
    // One or two digits a byte, groups of one length, none.
    {mac, "8:0:20:1:2:3", "080020010203"},
    {mac, "00-20-40-00-b1-09", macDigits},
    {mac, "0020.4000.B109", macDigits},
    {mac, "002040-00b109", macDigits},
    {mac, "00204000b109", macDigits},
    {mac, "0x00204000b109", macDigits},
    {mac, " \t00 20  40 00 b1 09\r\n", macDigits},
    {esi, "0:20:40:0:b1:9", macDigits},
    // The selector.
    {esiSelector, "00:20:40:00:b1:09-07", esiDigits},
    {esiSelector, "0:20:40:0:b1:9:7", esiDigits},
    {esiSelector, "00-20-40-00-b1-09.7", esiDigits},
    {esiSelector, "0020.4000.b109/07", esiDigits},
    {esiSelector, "0020.4000.b109.07", esiDigits},
    {esiSelector, "00204000b109:07", esiDigits},
    {esiSelector, "00204000b10907", esiDigits},
    // Prefixes and whole addresses.
    {prefix, "47.0005.80ff.e100.0000.f21a.26d8", prefixDigits},
    {prefix, "47.0005.80.ffe100.0000.f21a.26d8", prefixDigits},
    {prefix, "47.00.05.80.ff.e1.00.00.00.f2.1a.26.d8", prefixDigits},
    {prefix, "47:0:5:80:ff:e1:0:0:0:f2:1a:26:d8", prefixDigits},
    {prefix, " 47000580FFE1000000F21A26D8 ", prefixDigits},
    {nsap, "47.0005.80ff.e100.0000.f21a.26d8.0020d4144ab8.00", nsapDigits},
    {nsap, "47.0005.80ff.e100.0000.f21a.26d8.0020.d414.4ab8.00", nsapDigits},
    {nsap, "4700.0580.ffe1.0000.00f2.1a26.d800.20d4.144a.b800", nsapDigits},
    {nsap, "47.000580ffe1000000f21a26d8.0020d4144ab8.00", nsapDigits},
    {nsap, "0x47000580ffe1000000f21a26d80020d4144ab800", nsapDigits},
    {nsap, "47:00:05:80:ff:e1:00:00:00:f2:1a:26:d8:00:20:d4:14:4a:b8-00", nsapDigits},
    {nsap, "47.0005.80ff.e100.0000.f21a.26d8 00:20:d4:14:4a:b8/00", nsapDigits},
    {ip, " 192.168.001.10\n", "c0a8010a"},
    {ip, "255.255.255.0", "ffffff00"},
    // Not another address.
    {mac, "8:0:20:1:2", "A MAC address has 6 bytes; this text has 5."},
    {mac, "00:20:40:00:b1:09-07", "A MAC address has 6 bytes; this text has 7."},
    {mac, "00204000b10", "A MAC address has 12 digits; this text has 11."},
    {mac, "00204000b1-09", "The groups of digits are not those of an address."},
    {mac, "0020.4000.b19", "The groups of digits are not those of an address."},
    {mac, "00:20:40:00-b1:09", "The separators of this text differ."},
    {mac, "00:20::00:b1:09", "Digits are missing at a separator."},
    {mac, ":00:20:40:00:b1:09", "Digits are missing at a separator."},
    {mac, "00:20:40:00:b1:0g", "\"g\" is no hexadecimal digit."},
    {mac, "00:20:40:00:b1:\xfc", "A character of the text is no hexadecimal digit."},
    {mac, "00/20/40/00/b1/09", "\"/\" stands only before a selector."},
    {mac, " \n", "There is no address in this text."},
    {mac, "0x", "Digits are missing at a separator."},
    {esiSelector, "00:20:40:00:b1:09", "An ESI with its selector has 7 bytes; this text has 6."},
    {esiSelector, "00204000b1/0907", "The groups of digits are not those of an address."},
    {esiSelector, "0020.4000.b109/7", "The groups of digits are not those of an address."},
    {prefix, "07.0005.80ff.e100.0000.f21a.26d8", "A network prefix does not begin with 0."},
    {prefix, "47.0005.80ff", "A network prefix has 13 bytes; this text has 5."},
    {nsap, "47.0005:80ff.e100.0000.f21a.26d8.0020d4144ab8.00", "The separators of this text differ."},
    {ip, "300.1.1.1", "300 is too large: at most 255."},
    {ip, "0010.1.1.1", "0010 has more than 3 digits."},
    {ip, "10.1.1", "An IP address has 4 numbers; this text has 3."},
    {ip, "10.1..1", "A number is missing between the dots."},
    {ip, "10.1.1.1/24", "\"/\" is no digit."},
    {ip, "0xa.1.1.1", "\"x\" is no digit."},
};

TEST(ReadAddress, EverySpellingIsReadWholeOrRefusedWithTheReason) {
    for (const auto& [kind, text, expected] : spellings) {
        const AddressReading reading = ReadAddress(kind, text);
        EXPECT_EQ(reading.bytes.empty() ? reading.reason : digits(reading.bytes), expected) << text;
        EXPECT_NE(reading.bytes.empty(), reading.reason.empty()) << text;
    }
}

// A text from which a character was lost is never taken for the same kind of address with other bytes.
TEST(ReadAddress, AnAddressThatLostOneCharacterIsRefusedOrStillTheSame) {
    for (const auto& [kind, text, expected] : spellings) {
        const AddressReading whole = ReadAddress(kind, text);
        if (whole.bytes.empty() || kind == ip) continue;
        const std::string full = text;
        const bool byteByByte = full.find_first_of(":- ") != full.npos || full.find(".00.05.") != full.npos;
        for (std::size_t at = 0; at < full.size(); ++at) {
            const bool digit = std::isxdigit(static_cast<unsigned char>(full[at])) != 0;
            if (digit && byteByByte) continue;  // another byte, as it could have been meant
            const AddressReading rest = ReadAddress(kind, std::string(full).erase(at, 1));
            EXPECT_TRUE(rest.bytes.empty() || rest.bytes == whole.bytes) << text << " without " << at;
        }
    }
}

}  // namespace
