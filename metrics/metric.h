// Everything that the driver reports of an adapter, as one table: a row has name, unit, kind and help text of
// a value and the function that reads it. Rows that come with one reply stand together in a group; the rows
// of a table's group are its columns. Names and help texts are for scripts and for people who have not seen
// the windows; a name is used once in its group's service, or in its table.
#pragma once

#include "driver/queries.h"
#include "metrics/value.h"

#include <span>
#include <string>
#include <vector>

namespace metrics {

// What has values: an adapter itself and the services on it.
enum class Service : std::uint8_t { adapter, signalling, lec, les, lecs, ip };

struct Place {
    Service service = Service::adapter;
    int adapter = 0, instance = 0;  // from 0
    bool operator==(const Place&) const = default;
};

// An adapter and its services, in the order in which they are shown and asked.
std::vector<Place> placesOf(int adapter);
bool canBeAbsent(Service service);
std::string nameOf(const Place& place);  // "adapter1", "lec2"
std::string pathOf(const Place& place);  // "adapter1", "adapter1/lec2"

enum class Kind : std::uint8_t {
    counter,  // a number that only grows, and begins at 0 again behind the last of its width
    number,
    flag,
    alarm,  // a flag: the condition is there
    state,
    text,
    address,
};

using Bytes = std::span<const std::uint8_t>;
class Reading;

struct Metric {
    // Of the bytes of a reply, or of a row of a table.
    using Read = Value (*)(const Reading& reading, Bytes bytes);

    const char* name;
    const char* unit;  // what is counted or measured, in the plural; "": nothing
    Kind kind;
    const char* help;  // a sentence
    Read read;
    unsigned wrapBits = kind == Kind::counter ? 32 : 0;  // of a counter: its width
    // Reads the VCI whose counter it is, where that may become another one; null: it does not.
    Read circuit = nullptr;
    // Of a state: the words for a code, null for one without. A code that means two things, which a flag
    // beside it tells apart, has words for both.
    const char* (*words)(std::int64_t code) = nullptr;
};

// Neighbouring bytes of a table's row.
struct RowBytes {
    std::size_t at = 0, length = 0;
};

struct Group {
    Service service;
    QueryId query;
    std::span<const Metric> metrics;
    const char* table = "";  // the table's name; "": values of the service itself
    const char* key = "";    // the column by which a row is known again
    RowBytes keyBytes = {};  // what that column is read from
    // Whether values of the adapter's virtual circuits are needed beside the reply; null: never.
    bool (*circuits)(const Reading& reading) = nullptr;

    bool isTable() const { return *table != 0; }
};

// All groups, those of a service next to each other and in the order in which they are asked. A service that
// can be absent begins with a group whose first row is its state, 0 when it is.
std::span<const Group> groups();
std::span<const Group> groupsOf(Service service);

}  // namespace metrics
