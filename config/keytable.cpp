#include "config/keytable.h"

namespace {

constexpr int esiSelectorBytes = atmAddress::byteCount - prefixBytes;

// Makers of rows.
template <class Record> constexpr KeyRow<Record> number(const char* key, std::int32_t Record::*field) {
    return {key, field, keyLong, sizeof(std::int32_t)};
}

// The last character that the field has room for is never read.
template <class Record, std::size_t size>
constexpr KeyRow<Record> text(const char* key, FixedText<size> Record::*field) {
    return {key, field, keyString, static_cast<int>(size) - 1};
}

template <class Record> constexpr KeyRow<Record> prefix(const char* key, atmAddress Record::*address) {
    return {key, AddressField<Record>{address, addressPrefix}, keyBytes, prefixBytes};
}
template <class Record> constexpr KeyRow<Record> esi(const char* key, atmAddress Record::*address) {
    return {key, AddressField<Record>{address, addressEsiSelector}, keyBytes, esiSelectorBytes};
}

// The prefix of an address of which the file has no other half.
template <class Record> constexpr KeyRow<Record> prefixAlone(const char* key, atmAddress Record::*address) {
    return {key, AddressField<Record>{address, addressPrefix}, keyString, atmAddress::prefixDigits + 1};
}

template <class Record> constexpr KeyRow<Record> file(const char* key, FileName Record::*name) {
    return {key, FileField<Record>{name}, keyString, static_cast<int>(FileName::size) - 1};
}
template <class Record> constexpr KeyRow<Record> fileReadOnly(const char* key, FileName Record::*name) {
    KeyRow<Record> row = file(key, name);
    row.written = false;
    return row;
}

constexpr KeyRow<AtmSig> sigRows[] = {
    prefixAlone("NetPrefix", &AtmSig::address),
    number("UniRev", &AtmSig::uniRevision),
    number("AddressRegistration", &AtmSig::addressRegistration),
    number("PortChangeDetect", &AtmSig::portChangeDetect),
    number("RegDiffNetPrefix", &AtmSig::registerOtherPrefixes),
};

constexpr KeyRow<AtmLEC> lecRows[] = {
    number("Enabled", &AtmLEC::enabled),   number("Config", &AtmLEC::pvcOnly),
    number("Mfs", &AtmLEC::mtuClass),      number("L3Mtu", &AtmLEC::l3Mtu),
    number("ElanType", &AtmLEC::elanType), number("Lecs", &AtmLEC::useLecs),
    text("ElanName", &AtmLEC::elanName),   prefix("AtmPrefix", &AtmLEC::address),
    esi("AtmEsiSel", &AtmLEC::address),    file("PvcConfFile", &AtmLEC::pvcFile),
};

constexpr KeyRow<AtmLES> lesRows[] = {
    number("Enabled", &AtmLES::enabled),          number("Mfs", &AtmLES::mtuClass),
    number("MfsStrict", &AtmLES::strictMtu),      number("ElanNameStrict", &AtmLES::strictName),
    text("ElanName", &AtmLES::elanName),          number("ElanType", &AtmLES::elanType),
    fileReadOnly("ElanTbl", &AtmLES::clientFile),
};

constexpr KeyRow<AtmLECS> lecsRows[] = {
    prefix("AtmPrefix", &AtmLECS::address),       esi("AtmEsiSel", &AtmLECS::address),
    number("Enabled", &AtmLECS::enabled),         number("EtherMfs", &AtmLECS::etherMtuClass),
    number("TRMfs", &AtmLECS::tokenRingMtuClass), number("ElanType", &AtmLECS::elanType),
};

constexpr KeyRow<AtmIP1577> ipRows[] = {
    prefix("AtmPrefix", &AtmIP1577::address),
    esi("AtmEsiSel", &AtmIP1577::address),
    number("Enabled", &AtmIP1577::enabled),
    number("Config", &AtmIP1577::pvcOnly),
    text("ServerIPAddress", &AtmIP1577::serverIp),
    text("ServerIPMask", &AtmIP1577::subnetMask),
    text("IPAddress", &AtmIP1577::ip),
    file("PvcConfFile", &AtmIP1577::pvcFile),
};

}  // namespace

template <> std::span<const KeyRow<AtmSig>> keyRows() {
    return sigRows;
}
template <> std::span<const KeyRow<AtmLEC>> keyRows() {
    return lecRows;
}
template <> std::span<const KeyRow<AtmLES>> keyRows() {
    return lesRows;
}
template <> std::span<const KeyRow<AtmLECS>> keyRows() {
    return lecsRows;
}
template <> std::span<const KeyRow<AtmIP1577>> keyRows() {
    return ipRows;
}
