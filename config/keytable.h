// Which key of the parameter file holds which field of a record, and with what type and length.
#pragma once

#include "config/pdf_io.h"
#include "model/tvdatbuf.h"

#include <span>
#include <variant>

enum AddressHalf { addressPrefix, addressEsiSelector };

// One half of an ATM address. Written as its digits; read as text digits (type 6) or as bytes (type 5), and
// then the address is only set when both halves were read.
template <class Record> struct AddressField {
    atmAddress Record::*address;
    AddressHalf half;
};

// The name of a list file. One that cannot be read whole is not used: a part of it would name another file.
template <class Record> struct FileField { FileName Record::*name; };

template <class Record>
using KeyField = std::variant<std::int32_t Record::*, ElanName Record::*, AddressText Record::*,
                              AddressField<Record>, FileField<Record>>;

// How a key is written.
constexpr int notWritten = -1;
constexpr int textLength = 0;      // a string of the text's length
constexpr int onlyOverEmpty = -2;  // likewise, but a file name that stands there stays

template <class Record> struct KeyRow {
    const char* key;
    int readType;
    int readLength;
    int writeType;
    int writeLength;  // or one of the above
    KeyField<Record> field;
};

// The rows of one record kind, in the order in which they are read and written.
template <class Record> std::span<const KeyRow<Record>> keyRows();
template <> std::span<const KeyRow<AtmSig>> keyRows();
template <> std::span<const KeyRow<AtmLEC>> keyRows();
template <> std::span<const KeyRow<AtmLES>> keyRows();
template <> std::span<const KeyRow<AtmLECS>> keyRows();
template <> std::span<const KeyRow<AtmIP1577>> keyRows();

constexpr std::size_t mostKeys = 16;  // rows of a record at the most; the largest has 10
