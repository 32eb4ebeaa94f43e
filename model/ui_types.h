// Address value types: how addresses are held, shown, edited and stored in files.
//
// Text-producing operations whose names begin with Get return a pointer into getBuffer, one process-wide
// buffer; it is valid until the next such call. Hexadecimal output is lower case, two digits a byte. No
// operation reports an error: the input masks (masks.h) keep malformed text out of the dialogs, and what
// malformed text gives is said at each operation.
#pragma once

#include <array>
#include <cstdint>
#include <iosfwd>
#include <span>
#include <string_view>

extern char getBuffer[64];

// The value of a hexadecimal digit of either case, or -1. Letters beyond 'f' give values above 15.
int atox(char c);

// A LAN MAC address; byte 0 is first as shown and as exchanged with the driver.
class macAddress {
  public:
    using Bytes = std::array<std::uint8_t, 6>;

    macAddress() = default;
    explicit macAddress(const Bytes& bytes) : bytes_(bytes) {}

    // Six hexadecimal numbers, each followed by one separator of any kind: "0:a0:3e:0:0:1". Only the low 8
    // bits of a number count. Bytes that the text does not reach stay as they were.
    macAddress& operator=(std::string_view text);

    const char* GetFMacAddress() const;  // "00:a0:3e:00:00:01"

    // Reverses the bit order inside each byte: canonical (Ethernet) to Token Ring form and back.
    void formSwap();

    // Bytes 2 to 5 as a little-endian number.
    std::uint32_t hash() const;

    bool operator==(const macAddress&) const = default;
    const Bytes& bytes() const { return bytes_; }
    Bytes& bytes() { return bytes_; }

  private:
    Bytes bytes_{};
};

std::uint32_t myMacHashFunction(const macAddress& key);

// 12 digits without separators: "00a03e000001". Input that ends too early leaves the address as it was and
// the stream failed; a character that is no digit counts as -1.
std::ostream& operator<<(std::ostream& out, const macAddress& address);
std::istream& operator>>(std::istream& in, macAddress& address);

// An End System Identifier (6 bytes) and the selector byte behind it.
class esiSelector {
  public:
    using Bytes = std::array<std::uint8_t, 7>;

    esiSelector() = default;
    explicit esiSelector(const Bytes& bytes) : bytes_(bytes) {}

    // The display form, "00:a0:3e:00:00:01-00". Bytes that the text does not reach stay as they were.
    esiSelector& operator=(std::string_view text);

    const char* GetF2EsiSelector() const;  // display form: "00:a0:3e:00:00:01-00"
    const char* GetFEsiSelector() const;   // stream form:  "00a03e000001/00"

    bool operator==(const esiSelector&) const = default;
    bool operator<(const esiSelector& other) const { return bytes_ < other.bytes_; }
    const Bytes& bytes() const { return bytes_; }

  private:
    Bytes bytes_{};
};

// The stream form. Input as for macAddress.
std::ostream& operator<<(std::ostream& out, const esiSelector& address);
std::istream& operator>>(std::istream& in, esiSelector& address);

// A 20-byte ATM end-system address (NSAP format), held as 40 hexadecimal digits: 26 of the network prefix, 12
// of the ESI, 2 of the selector. Digits keep the case in which they came.
class atmAddress {
  public:
    static constexpr std::size_t byteCount = 20;
    static constexpr std::size_t prefixDigits = 26;
    static constexpr std::size_t esiSelectorDigits = 14;
    static constexpr std::size_t digitCount = prefixDigits + esiSelectorDigits;

    atmAddress();  // "4" and 39 "0"

    // The hexadecimal digits of the text, in order, into positions 0 to 39; other characters are skipped.
    // Stops at 40 digits or the end of the text; the remaining digits stay as they were.
    atmAddress& operator=(std::string_view text);

    void fromHex(std::span<const std::uint8_t, byteCount> bytes);
    void toHex(std::span<std::uint8_t, byteCount> bytes) const;

    const char* GetNetworkPrefix() const;   // 26 digits
    const char* GetESISelector() const;     // 14 digits
    const char* GetFNetworkPrefix() const;  // "47:00:79:00:00:00:00:00:00:00:00:00:00"
    const char* GetFESISelector() const;    // "00:a0:3e:00:00:01-00"

    // Replaces one half by the characters given, which are 26 and 14 digits; of a longer text only as many,
    // and of a shorter one only those that are there.
    void setNetworkPrefix(std::string_view digits);
    void setESISelector(std::string_view digits);

    std::string_view digits() const { return {digits_.data(), digitCount}; }
    bool operator==(const atmAddress& other) const { return digits() == other.digits(); }

  private:
    std::array<char, digitCount + 1> digits_;
};

// All 20 pairs separated by ":".
std::ostream& operator<<(std::ostream& out, const atmAddress& address);

// An IPv4 address; byte 0 is the first dotted field.
class ipAddress {
  public:
    using Bytes = std::array<std::uint8_t, 4>;

    ipAddress() = default;
    explicit ipAddress(const Bytes& bytes) : bytes_(bytes) {}

    // Four decimal numbers (leading zeros do not make them octal) separated by single characters; only the
    // low 8 bits of a number count. Bytes that the text does not reach stay as they were.
    ipAddress& operator=(std::string_view text);

    const char* GetFIPAddress() const;  // "192.168.1.10"

    bool operator==(const ipAddress&) const = default;
    const Bytes& bytes() const { return bytes_; }

  private:
    Bytes bytes_{};
};

// Dotted decimal. Input that ends too early leaves the address as it was and the stream failed.
std::ostream& operator<<(std::ostream& out, const ipAddress& address);
std::istream& operator>>(std::istream& in, ipAddress& address);
