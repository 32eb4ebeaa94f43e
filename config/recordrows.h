// Walking a record along its key table.
#pragma once

#include "config/keytable.h"

#include <algorithm>
#include <array>
#include <bitset>
#include <cassert>
#include <string_view>

template <class... Cases> struct Overloaded : Cases... { using Cases::operator()...; };
template <class... Cases> Overloaded(Cases...) -> Overloaded<Cases...>;

inline std::span<std::uint8_t> halfOf(std::span<std::uint8_t, atmAddress::byteCount> bytes,
                                      AddressHalf half) {
    return half == addressPrefix ? bytes.first(prefixBytes) : bytes.subspan(prefixBytes);
}

inline std::string_view leadingDigits(std::string_view text) {
    return text.substr(0, text.find_first_not_of("0123456789abcdefABCDEF"));
}

// Reads all rows of a record with query(row, destination). Returns which keys have a value.
template <class Record, class Query>
std::bitset<mostKeys> readRows(const SectionHandle& section, Record& record, Query query) {
    std::array<std::uint8_t, atmAddress::byteCount> bytes{};
    std::bitset<2> halves;
    atmAddress Record::*address = nullptr;
    std::bitset<mostKeys> present;
    std::size_t index = 0;
    assert(keyRows<Record>().size() <= mostKeys);
    for (const KeyRow<Record>& row : keyRows<Record>()) {
        const auto read = Overloaded{
            [&](std::int32_t Record::*field) { return query(row, &(record.*field)); },
            [&](ElanName Record::*field) { return query(row, (record.*field).data()); },
            [&](AddressText Record::*field) { return query(row, (record.*field).data()); },
            [&](const AddressField<Record>& field) {
                if (row.readType == keyString) {
                    std::array<char, atmAddress::prefixDigits + 1> digits{};
                    if (!query(row, digits.data())) return false;
                    (record.*field.address).setNetworkPrefix(leadingDigits(digits.data()));
                    return true;
                }
                if (!query(row, halfOf(bytes, field.half).data())) return false;
                halves.set(field.half);
                address = field.address;
                return true;
            },
            [&](const FileField<Record>& field) {
                FileName name;
                if (!query(row, name.data())) return false;
                if (!section.valueCut) record.*field.name = name;
                return true;
            },
        };
        present[index++] = std::visit(read, row.field);
    }
    if (halves.all()) (record.*address).fromHex(bytes);
    return present;
}

// Whether two records have the same value in the part of a field that the file holds.
template <class Record> bool sameField(const KeyField<Record>& field, const Record& a, const Record& b) {
    return std::visit(Overloaded{
                          [&](const AddressField<Record>& address) {
                              if (a.*address.address == b.*address.address) return true;
                              std::array<std::uint8_t, atmAddress::byteCount> left{}, right{};
                              (a.*address.address).toHex(left);
                              (b.*address.address).toHex(right);
                              return std::ranges::equal(halfOf(left, address.half),
                                                        halfOf(right, address.half));
                          },
                          [&](const FileField<Record>&) { return true; },  // an existing name is kept
                          [&](auto member) { return a.*member == b.*member; },
                      },
                      field);
}

// Whether all fields are the same as sameField() has it.
template <class Record> bool sameSettings(const Record& a, const Record& b) {
    return std::ranges::all_of(keyRows<Record>(),
                               [&](const KeyRow<Record>& row) { return sameField(row.field, a, b); });
}

// Whether the file already has the record's value of a row, which is not written then. If the file has only
// one half of an address, neither half was read; unless the address was changed, that half must stay as it
// is.
template <class Record>
bool stands(const std::bitset<mostKeys>& present, std::size_t index, const Record& before,
            const Record& record) {
    const auto rows = keyRows<Record>();
    const auto isHalf = [&](std::size_t i) {
        return rows[i].readType == keyBytes && std::holds_alternative<AddressField<Record>>(rows[i].field);
    };
    std::size_t halves = 0;
    for (std::size_t i = 0; i < rows.size(); ++i) halves += present[i] && isHalf(i);
    if (halves != 1 || !isHalf(index)) return present[index] && sameField(rows[index].field, before, record);
    const auto address = std::get<AddressField<Record>>(rows[index].field).address;
    return before.*address == record.*address;
}
