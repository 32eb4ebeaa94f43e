// Rules about a value as it stands in a section of the parameter file. Inside the folder only.
#pragma once

#include "config/keytable.h"
#include "model/rules.h"

#include <optional>
#include <string_view>

struct RawValue {
    enum class Kind { number, name, address, other };

    bool there = false;        // the section has the key
    std::string_view text;     // the whole word behind it
    std::size_t readable = 0;  // characters of it that are read
    // What the key takes.
    Kind kind = Kind::other;
    CodeNames codes = {};    // of a number
    std::int32_t most = 0;   // of a number without codes
    std::size_t digits = 0;  // of an address
};

// The first rule that the value breaks, without a path.
std::optional<Finding> CheckValue(const RawValue& value);
