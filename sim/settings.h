// What a change request can set, field by field: where a field stands in the request's data, and what it is
// called in a dump. Requests are read and dumps are written along these tables.
#pragma once

#include "model/tvdatbuf.h"
#include "sim/wire.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

namespace sim {

// A client that the LECS sends to a server of its adapter.
struct Mapping {
    esiSelector client;
    std::int32_t les = 0;  // from 0
};

template <class Record>
using SettingField =
    std::variant<std::int32_t Record::*, std::uint16_t Record::*, ElanName Record::*, AddressText Record::*,
                 atmAddress Record::*, macAddress Record::*, ipAddress Record::*, esiSelector Record::*>;

template <class Record> struct Setting {
    std::string_view name;
    std::uint16_t offset, width;  // bytes within the request's data
    SettingField<Record> field;
};

// For AtmLEC, AtmLES, AtmLECS, AtmIP1577, AtmBridgedPvc, AtmRoutedPvc and Mapping.
template <class Record> std::span<const Setting<Record>> settings();

// The request's data as a record; what no request carries has its default. Nothing if a text has no
// terminator within its field. `data` must hold all fields.
template <class Record> std::optional<Record> readSettings(ConstBytes data);

// A field's value in its usual form, texts in quotes.
template <class Record> std::string settingText(const Setting<Record>& setting, const Record& record);

}  // namespace sim
