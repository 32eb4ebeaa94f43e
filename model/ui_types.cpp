#include "model/ui_types.h"

#include <algorithm>
#include <cstring>
#include <iomanip>
#include <istream>
#include <ostream>

char getBuffer[64];

namespace {

constexpr char hexDigits[] = "0123456789abcdef";

bool blank(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

std::uint8_t byteOf(char high, char low) {
    return static_cast<std::uint8_t>((atox(high) << 4) + atox(low));
}

// Writes into getBuffer, which is large enough for all callers.
class BufferWriter {
  public:
    void put(char c) { *at_++ = c; }
    void pair(std::uint8_t byte) {
        put(hexDigits[byte >> 4]);
        put(hexDigits[byte & 15]);
    }
    void pairs(std::span<const std::uint8_t> bytes, char separator) {
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            if (i && separator) put(separator);
            pair(bytes[i]);
        }
    }
    // Digits two by two with a separator between the pairs.
    void digitPairs(std::string_view digits) {
        for (std::size_t i = 0; i < digits.size(); ++i) {
            if (i && i % 2 == 0) put(':');
            put(digits[i]);
        }
    }
    const char* end() {
        *at_ = '\0';
        return getBuffer;
    }

  private:
    char* at_ = getBuffer;
};

// Reads numbers separated by one character of any kind. `digit` gives a digit's value or a negative number.
template <std::size_t N>
void readNumbers(std::string_view text, unsigned base, std::array<std::uint8_t, N>& bytes) {
    std::size_t at = 0;
    for (std::uint8_t& byte : bytes) {
        while (at < text.size() && blank(text[at])) ++at;
        unsigned value = 0;
        const std::size_t start = at;
        for (; at < text.size(); ++at) {
            const int digit = atox(text[at]);
            if (digit < 0 || digit >= static_cast<int>(base)) break;
            value = (value * base + static_cast<unsigned>(digit)) & 0xff;
        }
        if (at == start) return;
        byte = static_cast<std::uint8_t>(value);
        ++at;  // the separator
    }
}

// Reads `N` non-blank characters. False, and the stream failed, when it ends before.
template <std::size_t N> bool readCharacters(std::istream& in, std::array<char, N>& characters) {
    const std::istream::sentry ready(in, true);
    for (std::size_t count = 0; ready && count < N;) {
        const int c = in.rdbuf()->sbumpc();
        if (c == std::char_traits<char>::eof()) {
            in.setstate(std::ios::eofbit | std::ios::failbit);
            return false;
        }
        if (!blank(static_cast<char>(c))) characters[count++] = static_cast<char>(c);
    }
    return in.good();
}

template <std::size_t N> std::array<std::uint8_t, N> bytesOf(std::span<const char> digits) {
    std::array<std::uint8_t, N> bytes{};
    for (std::size_t i = 0; i < N; ++i) bytes[i] = byteOf(digits[2 * i], digits[2 * i + 1]);
    return bytes;
}

void writeDigits(std::ostream& out, std::span<const std::uint8_t> bytes) {
    std::string digits;
    for (const std::uint8_t byte : bytes) digits.append({hexDigits[byte >> 4], hexDigits[byte & 15]});
    out << digits << std::right << std::dec << std::setfill(' ');
}

}  // namespace

int atox(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'z') return c - 'a' + 10;
    if (c >= 'A' && c <= 'Z') return c - 'A' + 10;
    return -1;
}

macAddress& macAddress::operator=(std::string_view text) {
    readNumbers(text, 16, bytes_);
    return *this;
}

const char* macAddress::GetFMacAddress() const {
    BufferWriter writer;
    writer.pairs(bytes_, ':');
    return writer.end();
}

void macAddress::formSwap() {
    for (std::uint8_t& byte : bytes_) {
        unsigned reversed = 0;
        for (unsigned bit = 0; bit < 8; ++bit)
            if (byte & (1U << bit)) reversed |= 0x80U >> bit;
        byte = static_cast<std::uint8_t>(reversed);
    }
}

std::uint32_t macAddress::hash() const {
    return bytes_[2] + (std::uint32_t{bytes_[3]} << 8) + (std::uint32_t{bytes_[4]} << 16) +
           (std::uint32_t{bytes_[5]} << 24);
}

std::uint32_t myMacHashFunction(const macAddress& key) {
    return key.hash();
}

std::ostream& operator<<(std::ostream& out, const macAddress& address) {
    writeDigits(out, address.bytes());
    return out;
}

std::istream& operator>>(std::istream& in, macAddress& address) {
    std::array<char, 12> digits{};
    if (readCharacters(in, digits)) address = macAddress(bytesOf<6>(digits));
    return in;
}

esiSelector& esiSelector::operator=(std::string_view text) {
    std::array<char, 20> characters{};  // six digit pairs with their separators, and the selector's pair
    std::size_t count = 0;
    for (std::size_t at = 0; at < text.size() && count < characters.size(); ++at)
        if (!blank(text[at])) characters[count++] = text[at];
    for (std::size_t i = 0; i < bytes_.size() && 3 * i + 2 <= count; ++i)
        bytes_[i] = byteOf(characters[3 * i], characters[3 * i + 1]);
    return *this;
}

const char* esiSelector::GetF2EsiSelector() const {
    BufferWriter writer;
    writer.pairs(std::span(bytes_).first(6), ':');
    writer.put('-');
    writer.pair(bytes_[6]);
    return writer.end();
}

const char* esiSelector::GetFEsiSelector() const {
    BufferWriter writer;
    writer.pairs(std::span(bytes_).first(6), '\0');
    writer.put('/');
    writer.pair(bytes_[6]);
    return writer.end();
}

std::ostream& operator<<(std::ostream& out, const esiSelector& address) {
    const std::span<const std::uint8_t> bytes(address.bytes());
    writeDigits(out, bytes.first(6));
    out << '/';
    writeDigits(out, bytes.last(1));
    return out;
}

std::istream& operator>>(std::istream& in, esiSelector& address) {
    std::array<char, 15> characters{};
    if (!readCharacters(in, characters)) return in;
    std::copy(characters.begin() + 13, characters.end(), characters.begin() + 12);  // over the separator
    address = esiSelector(bytesOf<7>(characters));
    return in;
}

atmAddress::atmAddress() {
    digits_.fill('0');
    digits_[0] = '4';
}

atmAddress& atmAddress::operator=(std::string_view text) {
    std::size_t count = 0;
    for (const char c : text) {
        if (count == digitCount) break;
        const int digit = atox(c);
        if (digit >= 0 && digit < 16) digits_[count++] = c;
    }
    return *this;
}

void atmAddress::fromHex(std::span<const std::uint8_t, byteCount> bytes) {
    for (std::size_t i = 0; i < byteCount; ++i) {
        digits_[2 * i] = hexDigits[bytes[i] >> 4];
        digits_[2 * i + 1] = hexDigits[bytes[i] & 15];
    }
    digits_[digitCount] = '\0';
}

void atmAddress::toHex(std::span<std::uint8_t, byteCount> bytes) const {
    for (std::size_t i = 0; i < byteCount; ++i) bytes[i] = byteOf(digits_[2 * i], digits_[2 * i + 1]);
}

const char* atmAddress::GetNetworkPrefix() const {
    BufferWriter writer;
    for (const char c : digits().substr(0, prefixDigits)) writer.put(c);
    return writer.end();
}

const char* atmAddress::GetESISelector() const {
    BufferWriter writer;
    for (const char c : digits().substr(prefixDigits)) writer.put(c);
    return writer.end();
}

const char* atmAddress::GetFNetworkPrefix() const {
    BufferWriter writer;
    writer.digitPairs(digits().substr(0, prefixDigits));
    return writer.end();
}

const char* atmAddress::GetFESISelector() const {
    BufferWriter writer;
    writer.digitPairs(digits().substr(prefixDigits, 12));
    writer.put('-');
    writer.put(digits_[38]);
    writer.put(digits_[39]);
    return writer.end();
}

void atmAddress::setNetworkPrefix(std::string_view digits) {
    const std::string_view part = digits.substr(0, prefixDigits);
    std::copy(part.begin(), part.end(), digits_.begin());
}

void atmAddress::setESISelector(std::string_view digits) {
    const std::string_view part = digits.substr(0, esiSelectorDigits);
    std::copy(part.begin(), part.end(), digits_.begin() + prefixDigits);
}

std::ostream& operator<<(std::ostream& out, const atmAddress& address) {
    const std::string_view digits = address.digits();
    for (std::size_t i = 0; i < digits.size(); i += 2) out << (i ? ":" : "") << digits.substr(i, 2);
    return out;
}

ipAddress& ipAddress::operator=(std::string_view text) {
    readNumbers(text, 10, bytes_);
    return *this;
}

const char* ipAddress::GetFIPAddress() const {
    BufferWriter writer;
    for (std::size_t i = 0; i < bytes_.size(); ++i) {
        if (i) writer.put('.');
        if (bytes_[i] >= 100) writer.put(static_cast<char>('0' + bytes_[i] / 100));
        if (bytes_[i] >= 10) writer.put(static_cast<char>('0' + bytes_[i] / 10 % 10));
        writer.put(static_cast<char>('0' + bytes_[i] % 10));
    }
    return writer.end();
}

std::ostream& operator<<(std::ostream& out, const ipAddress& address) {
    const auto& bytes = address.bytes();
    return out << std::dec << static_cast<unsigned>(bytes[0]) << '.' << static_cast<unsigned>(bytes[1]) << '.'
               << static_cast<unsigned>(bytes[2]) << '.' << static_cast<unsigned>(bytes[3]);
}

std::istream& operator>>(std::istream& in, ipAddress& address) {
    ipAddress::Bytes bytes{};
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        unsigned value = 0;
        char separator = 0;
        if (i && !in.get(separator)) return in;
        if (!(in >> std::dec >> value)) return in;
        bytes[i] = static_cast<std::uint8_t>(value);
    }
    address = ipAddress(bytes);
    return in;
}
