#include "config/keytable.h"

#include "config/recordrows.h"

namespace {

constexpr int esiSelectorBytes = atmAddress::byteCount - prefixBytes;

constexpr CodeName flagNames[] = {{0, "false", "off"}, {1, "true", "on"}};
constexpr CodeName mtuNames[] = {
    {1, "1516", "1516"}, {2, "4544", "4544"}, {3, "9234", "9234"}, {4, "18190", "18190"}};
constexpr CodeName lecElanTypes[] = {{0, "ethernet", "Ethernet"}, {1, "tokenRing", "Token Ring"}};
constexpr CodeName serverElanTypes[] = {{1, "ethernet", "Ethernet"}, {2, "tokenRing", "Token Ring"}};
constexpr CodeName uniRevisions[] = {{30, "3.0", "3.0"}, {31, "3.1", "3.1"}};

// Makers of rows.
template <class Record>
constexpr KeyRow<Record> number(const char* key, const char* name, const char* words,
                                std::int32_t Record::*field, CodeNames codes = {}) {
    return {key, name, words, field, keyLong, sizeof(std::int32_t), true, codes};
}
template <class Record>
constexpr KeyRow<Record> flag(const char* key, const char* name, const char* words,
                              std::int32_t Record::*field) {
    return number(key, name, words, field, flagNames);
}

// The last character that the field has room for is never read.
template <class Record, std::size_t size>
constexpr KeyRow<Record> text(const char* key, const char* name, const char* words,
                              FixedText<size> Record::*field) {
    return {key, name, words, field, keyString, static_cast<int>(size) - 1};
}

template <class Record> constexpr KeyRow<Record> prefix(atmAddress Record::*address) {
    return {"AtmPrefix", "networkPrefix", "Network Prefix", AddressField<Record>{address, addressPrefix},
            keyBytes,    prefixBytes};
}
template <class Record> constexpr KeyRow<Record> esi(atmAddress Record::*address) {
    return {"AtmEsiSel", "esiSelector",   "ESI/Selector", AddressField<Record>{address, addressEsiSelector},
            keyBytes,    esiSelectorBytes};
}

// The prefix of an address of which the file has no other half.
template <class Record> constexpr KeyRow<Record> prefixAlone(const char* key, atmAddress Record::*address) {
    return {key,
            "networkPrefix",
            "Network Prefix",
            AddressField<Record>{address, addressPrefix},
            keyString,
            atmAddress::prefixDigits + 1};
}

template <class Record>
constexpr KeyRow<Record> file(const char* key, const char* name, const char* words, FileName Record::*field) {
    return {key, name, words, FileField<Record>{field}, keyString, static_cast<int>(FileName::size) - 1};
}
template <class Record>
constexpr KeyRow<Record> fileReadOnly(const char* key, const char* name, const char* words,
                                      FileName Record::*field) {
    KeyRow<Record> row = file(key, name, words, field);
    row.written = false;
    return row;
}

constexpr KeyRow<AtmSig> sigRows[] = {
    prefixAlone("NetPrefix", &AtmSig::address),
    number("UniRev", "uniRevision", "UNI Revision", &AtmSig::uniRevision, uniRevisions),
    flag("AddressRegistration", "addressRegistration", "Enable Address Registration",
         &AtmSig::addressRegistration),
    flag("PortChangeDetect", "portChangeDetect", "ILMI Port Change Detection", &AtmSig::portChangeDetect),
    flag("RegDiffNetPrefix", "registerOtherPrefixes", "Register Nonstandard Prefixes",
         &AtmSig::registerOtherPrefixes),
};

constexpr KeyRow<AtmLEC> lecRows[] = {
    flag("Enabled", "enabled", "Enable", &AtmLEC::enabled),
    flag("Config", "pvcOnly", "PVC Only", &AtmLEC::pvcOnly),
    number("Mfs", "mtu", "ELAN MTU", &AtmLEC::mtuClass, mtuNames),
    {"L3Mtu", "l3Mtu", "L3 MTU", &AtmLEC::l3Mtu, keyLong, sizeof(std::int32_t), true, {}, 32767, "bytes"},
    number("ElanType", "elanType", "ELAN Type", &AtmLEC::elanType, lecElanTypes),
    flag("Lecs", "useLecs", "LECS", &AtmLEC::useLecs),
    text("ElanName", "elanName", "ELAN Name", &AtmLEC::elanName),
    prefix(&AtmLEC::address),
    esi(&AtmLEC::address),
    file("PvcConfFile", "pvcFile", "PVC file", &AtmLEC::pvcFile),
};

constexpr KeyRow<AtmLES> lesRows[] = {
    flag("Enabled", "enabled", "Enable", &AtmLES::enabled),
    number("Mfs", "mtu", "ELAN MTU", &AtmLES::mtuClass, mtuNames),
    flag("MfsStrict", "strictMtu", "Strict MTU Size", &AtmLES::strictMtu),
    flag("ElanNameStrict", "strictName", "Strict ELAN Name", &AtmLES::strictName),
    text("ElanName", "elanName", "ELAN Name", &AtmLES::elanName),
    number("ElanType", "elanType", "ELAN Type", &AtmLES::elanType, serverElanTypes),
    fileReadOnly("ElanTbl", "clientFile", "client file", &AtmLES::clientFile),
};

constexpr KeyRow<AtmLECS> lecsRows[] = {
    prefix(&AtmLECS::address),
    esi(&AtmLECS::address),
    flag("Enabled", "enabled", "Enable", &AtmLECS::enabled),
    number("EtherMfs", "ethernetMtu", "Ethernet MTU", &AtmLECS::etherMtuClass, mtuNames),
    number("TRMfs", "tokenRingMtu", "Token Ring MTU", &AtmLECS::tokenRingMtuClass, mtuNames),
    number("ElanType", "elanType", "ELAN Type", &AtmLECS::elanType, serverElanTypes),
};

constexpr KeyRow<AtmIP1577> ipRows[] = {
    prefix(&AtmIP1577::address),
    esi(&AtmIP1577::address),
    flag("Enabled", "enabled", "Enable", &AtmIP1577::enabled),
    flag("Config", "pvcOnly", "PVC Only", &AtmIP1577::pvcOnly),
    text("ServerIPAddress", "serverAddress", "ARP Server IP Address", &AtmIP1577::serverIp),
    text("ServerIPMask", "subnetMask", "Subnet Mask", &AtmIP1577::subnetMask),
    text("IPAddress", "address", "IP Address", &AtmIP1577::ip),
    file("PvcConfFile", "pvcFile", "PVC file", &AtmIP1577::pvcFile),
};

std::string codeText(CodeNames codes, std::int32_t code, ValueForm form) {
    if (codes.empty()) return std::to_string(code);
    for (const CodeName& known : codes)
        if (known.code == code) return form == ValueForm::name ? known.name : known.words;
    return "code " + std::to_string(code);
}

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

template <class Record>
std::string valueText(const KeyRow<Record>& row, const Record& record, ValueForm form) {
    return std::visit(
        Overloaded{
            [&](std::int32_t Record::*field) { return codeText(row.codes, record.*field, form); },
            [&](const AddressField<Record>& field) -> std::string {
                const atmAddress& address = record.*field.address;
                return field.half == addressPrefix ? address.GetFNetworkPrefix() : address.GetFESISelector();
            },
            [&](const FileField<Record>& field) { return (record.*field.name).str(); },
            [&](auto field) { return (record.*field).str(); },
        },
        row.field);
}

template std::string valueText(const KeyRow<AtmSig>&, const AtmSig&, ValueForm);
template std::string valueText(const KeyRow<AtmLEC>&, const AtmLEC&, ValueForm);
template std::string valueText(const KeyRow<AtmLES>&, const AtmLES&, ValueForm);
template std::string valueText(const KeyRow<AtmLECS>&, const AtmLECS&, ValueForm);
template std::string valueText(const KeyRow<AtmIP1577>&, const AtmIP1577&, ValueForm);
