#include "config/newparameters.h"

#include "config/defaultnames.h"
#include "config/keytable.h"
#include "config/recordrows.h"
#include "model/tvdatbuf.h"

#include <fmt/format.h>

namespace {

constexpr const char* heading =
    "# Driver parameters of the ATM adapters. The driver reads this file when it is loaded; the "
    "configuration\n"
    "# tool rewrites the values and keeps comments and layout.\n"
    "#\n"
    "# One section for each adapter, counted from 0, and in it one for each service:\n"
    "#\n"
    "#   Signalling0      UNI signalling and ILMI address registration\n"
    "#   LEC0 to LEC3     LAN Emulation Clients\n"
    "#   LES0 to LES7     LAN Emulation Servers with their BUS\n"
    "#   LECS0            LAN Emulation Configuration Server\n"
    "#   IP15770          Classical IP over ATM client\n"
    "#\n"
    "# A value is one word. The keys of an adapter stand before its first inner section. Frame sizes (Mfs,\n"
    "# EtherMfs, TRMfs) are classes.\n";

// The value as the file has it.
template <class Record> std::string valueOf(const KeyRow<Record>& row, const Record& record) {
    return std::visit(Overloaded{
                          [&](std::int32_t Record::*field) { return std::to_string(record.*field); },
                          [&](const AddressField<Record>& field) {
                              const std::string_view digits = (record.*field.address).digits();
                              return std::string(field.half == addressPrefix
                                                     ? digits.substr(0, atmAddress::prefixDigits)
                                                     : digits.substr(atmAddress::prefixDigits));
                          },
                          [&](const FileField<Record>& field) { return (record.*field.name).str(); },
                          [&](auto field) { return (record.*field).str(); },
                      },
                      row.field);
}

// "ELAN Type: 0 = Ethernet, 1 = Token Ring"
template <class Record> std::string commentOf(const KeyRow<Record>& row, const Record& record) {
    std::string text = row.words;
    if (std::holds_alternative<AddressField<Record>>(row.field))
        text += fmt::format(": {} hexadecimal digits", valueOf(row, record).size());
    const char* before = ": ";
    for (const CodeName& code : row.codes) {
        text += fmt::format("{}{} = {}", before, code.code, code.words);
        before = ", ";
    }
    return text;
}

template <class Record> std::string sectionText(const std::string& path, const Record& record) {
    std::string text = fmt::format("\n\t[{}\n", path.substr(path.rfind('/') + 1));
    for (const KeyRow<Record>& row : keyRows<Record>())
        text += fmt::format("\t\t{:23} = {}  # {}\n", row.key, valueOf(row, record), commentOf(row, record));
    return text + "\t]\n";
}

std::string adapterText(int a, const std::function<bool(const std::string&)>& isFree,
                        std::int32_t uniRevision) {
    const auto named = [&](const std::string& file) { return isFree(file) ? file : std::string(); };
    std::string text =
        fmt::format("\n[Adapter{}\n\t{:31} = -1  # -1 = detect automatically\n", a, "InterruptNumber");
    AtmSig signalling;
    signalling.uniRevision = uniRevision;
    text += sectionText(sectionPath(a, "Signalling0"), signalling);
    for (int m = 0; m < lecCount; ++m) {
        AtmLEC lec;
        lec.pvcFile = named(lecPvcFile(a, m));
        text += sectionText(sectionPath(a, "LEC", m), lec);
    }
    for (int m = 0; m < lesCount; ++m) {
        AtmLES les;
        les.clientFile = named(elanClientFile(a, m));
        text += sectionText(sectionPath(a, "LES", m), les);
    }
    text += sectionText(sectionPath(a, "LECS0"), AtmLECS{});
    AtmIP1577 ip;
    ip.pvcFile = named(ipPvcFile(a));
    return text + sectionText(sectionPath(a, "IP15770"), ip) + "]\n";
}

}  // namespace

std::string newParameters(std::span<const int> adapters,
                          const std::function<bool(const std::string& listFile)>& isFree,
                          std::int32_t uniRevision) {
    std::string text = heading;
    for (const int adapter : adapters) text += adapterText(adapter, isFree, uniRevision);
    return text;
}
