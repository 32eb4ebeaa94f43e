#include "sim/settings.h"

#include <algorithm>
#include <fmt/format.h>

namespace sim {

namespace {

std::string quoted(std::string_view text) {
    std::string result = "\"";
    for (const char c : text) {
        const auto code = static_cast<unsigned char>(c);
        if (code < ' ' || code > '~' || c == '"' || c == '\\')
            result += fmt::format("\\x{:02x}", code);
        else
            result += c;
    }
    return result + "\"";
}

// Numbers of fewer than four bytes have no sign.
bool read(std::int32_t& value, ConstBytes in) {
    value = static_cast<std::int32_t>(static_cast<std::uint32_t>(getNumber(in)));
    return true;
}
bool read(std::uint16_t& value, ConstBytes in) {
    value = static_cast<std::uint16_t>(getNumber(in));
    return true;
}
bool read(ElanName& value, ConstBytes in) {
    const auto end = std::find(in.begin(), in.end(), 0);
    value = std::string(in.begin(), end);
    return end != in.end();
}
// A number in host order, the first dotted field in its most significant byte.
bool read(AddressText& value, ConstBytes in) {
    ipAddress::Bytes bytes{};
    std::copy(in.rbegin(), in.rend(), bytes.begin());
    value = std::string_view(ipAddress(bytes).GetFIPAddress());
    return true;
}
bool read(atmAddress& value, ConstBytes in) {
    value.fromHex(in.first<atmAddress::byteCount>());
    return true;
}
template <class Address> bool read(Address& value, ConstBytes in) {
    typename Address::Bytes bytes{};
    std::copy(in.begin(), in.end(), bytes.begin());
    value = Address(bytes);
    return true;
}

std::string text(std::int32_t value) {
    return fmt::format("{}", value);
}
std::string text(const ElanName& value) {
    return quoted(value.view());
}
// As the address that it is: the files may spell it with leading zeros, or not at all.
std::string text(const AddressText& value) {
    ipAddress address;
    address = value.view();
    return address.GetFIPAddress();
}
std::string text(const atmAddress& value) {
    AtmBytes bytes{};
    value.toHex(bytes);
    return fmt::format("{:02x}", fmt::join(bytes, ":"));
}
std::string text(const macAddress& value) {
    return value.GetFMacAddress();
}
std::string text(const ipAddress& value) {
    return value.GetFIPAddress();
}
std::string text(const esiSelector& value) {
    return value.GetF2EsiSelector();
}

}  // namespace

template <> std::span<const Setting<AtmLEC>> settings() {
    static constexpr Setting<AtmLEC> rows[] = {
        {"useLecs", 0, 4, &AtmLEC::useLecs},    {"address", 4, 20, &AtmLEC::address},
        {"mtuClass", 24, 4, &AtmLEC::mtuClass}, {"elanName", 28, 32, &AtmLEC::elanName},
        {"elanType", 60, 4, &AtmLEC::elanType}, {"pvcOnly", 64, 4, &AtmLEC::pvcOnly},
        {"l3Mtu", 68, 4, &AtmLEC::l3Mtu},
    };
    return rows;
}

template <> std::span<const Setting<AtmLES>> settings() {
    static constexpr Setting<AtmLES> rows[] = {
        {"elanName", 0, 32, &AtmLES::elanName}, {"strictName", 32, 4, &AtmLES::strictName},
        {"mtuClass", 36, 4, &AtmLES::mtuClass}, {"strictMtu", 40, 4, &AtmLES::strictMtu},
        {"elanType", 44, 4, &AtmLES::elanType},
    };
    return rows;
}

template <> std::span<const Setting<AtmLECS>> settings() {
    static constexpr Setting<AtmLECS> rows[] = {
        {"address", 0, 20, &AtmLECS::address},
        {"elanType", 20, 4, &AtmLECS::elanType},
        {"etherMtuClass", 24, 4, &AtmLECS::etherMtuClass},
        {"tokenRingMtuClass", 28, 4, &AtmLECS::tokenRingMtuClass},
    };
    return rows;
}

template <> std::span<const Setting<Mapping>> settings() {
    static constexpr Setting<Mapping> rows[] = {
        {"client", 32, 7, &Mapping::client},
        {"les", 40, 4, &Mapping::les},
    };
    return rows;
}

template <> std::span<const Setting<AtmIP1577>> settings() {
    static constexpr Setting<AtmIP1577> rows[] = {
        {"serverIp", 4, 4, &AtmIP1577::serverIp},
        {"subnetMask", 8, 4, &AtmIP1577::subnetMask},
        {"ip", 12, 4, &AtmIP1577::ip},
        {"address", 16, 20, &AtmIP1577::address},
        {"pvcOnly", 36, 4, &AtmIP1577::pvcOnly},
    };
    return rows;
}

template <> std::span<const Setting<AtmRoutedPvc>> settings() {
    static constexpr Setting<AtmRoutedPvc> rows[] = {
        {"ip", 0, 4, &AtmRoutedPvc::ip},
        {"vci", 4, 2, &AtmRoutedPvc::vci},
        {"encapsulation", 6, 1, &AtmRoutedPvc::encapsulation},
    };
    return rows;
}

template <> std::span<const Setting<AtmBridgedPvc>> settings() {
    static constexpr Setting<AtmBridgedPvc> rows[] = {
        {"mac", 0, 6, &AtmBridgedPvc::mac},
        {"vci", 6, 2, &AtmBridgedPvc::vci},
        {"encapsulation", 8, 1, &AtmBridgedPvc::encapsulation},
        {"broadcast", 10, 1, &AtmBridgedPvc::broadcast},
    };
    return rows;
}

template <class Record> std::optional<Record> readSettings(ConstBytes data) {
    Record record;
    for (const Setting<Record>& setting : settings<Record>()) {
        const ConstBytes in = data.subspan(setting.offset, setting.width);
        if (!std::visit([&](auto member) { return read(record.*member, in); }, setting.field))
            return std::nullopt;
    }
    return record;
}

template <class Record> std::string settingText(const Setting<Record>& setting, const Record& record) {
    return std::visit([&](auto member) { return text(record.*member); }, setting.field);
}

#define SIM_SETTINGS_OF(Record)                                                                              \
    template std::optional<Record> readSettings<Record>(ConstBytes);                                         \
    template std::string settingText<Record>(const Setting<Record>&, const Record&)
SIM_SETTINGS_OF(AtmLEC);
SIM_SETTINGS_OF(AtmLES);
SIM_SETTINGS_OF(AtmLECS);
SIM_SETTINGS_OF(Mapping);
SIM_SETTINGS_OF(AtmIP1577);
SIM_SETTINGS_OF(AtmRoutedPvc);
SIM_SETTINGS_OF(AtmBridgedPvc);
#undef SIM_SETTINGS_OF

}  // namespace sim
