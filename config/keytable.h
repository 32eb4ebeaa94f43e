// The keys of the parameter file as rows: which key holds which field of a record, and how it is read.
#pragma once

#include "config/pdf_io.h"
#include "model/tvdatbuf.h"

#include <span>
#include <string>
#include <variant>

enum AddressHalf { addressPrefix, addressEsiSelector };
constexpr int prefixBytes = atmAddress::prefixDigits / 2;

// One half of an ATM address. It is written as its digits. A half that is read as digits is set at once;
// halves that are read as bytes set the address only when both were read.
template <class Record> struct AddressField {
    atmAddress Record::*address;
    AddressHalf half;
};

// The name of a list file. A name that cannot be read whole is not used, since a part of it would name
// another file.
template <class Record> struct FileField { FileName Record::*name; };

template <class Record>
using KeyField = std::variant<std::int32_t Record::*, ElanName Record::*, AddressText Record::*,
                              AddressField<Record>, FileField<Record>>;

// How people write a number that stands for something.
struct CodeName {
    std::int32_t code;
    const char* name;   // in a script: "tokenRing"
    const char* words;  // in a window: "Token Ring"
};
using CodeNames = std::span<const CodeName>;

// Numbers are written as keyLong, everything else as text.
template <class Record> struct KeyRow {
    const char* key;
    const char* name;   // in a script: "mtu"
    const char* words;  // in a window: "ELAN MTU"
    KeyField<Record> field;
    KeyType readType;
    int readLength;  // bytes, with the terminating zero of a text
    bool written = true;
    CodeNames codes = {};  // of a number; none: it is shown as it is
    // Of a number without codes.
    std::int32_t most = 0;
    const char* unit = "";
};

// The value of a row in a record, for scripts or for windows. A code that has no name is "code 7".
enum class ValueForm { name, words };
template <class Record>
std::string valueText(const KeyRow<Record>& row, const Record& record, ValueForm form);

// The rows of one record type, in the order in which they are read and written.
template <class Record> std::span<const KeyRow<Record>> keyRows();
template <> std::span<const KeyRow<AtmSig>> keyRows();
template <> std::span<const KeyRow<AtmLEC>> keyRows();
template <> std::span<const KeyRow<AtmLES>> keyRows();
template <> std::span<const KeyRow<AtmLECS>> keyRows();
template <> std::span<const KeyRow<AtmIP1577>> keyRows();

constexpr std::size_t mostKeys = 16;  // upper limit of a record's rows; the largest has 10
