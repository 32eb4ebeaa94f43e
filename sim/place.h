// How commands name an instance, a table row and a field: TARGET [ADAPTER[.INSTANCE]] [row N]
// [FIELD]. Adapters, instances and rows count from 1, as the tool's windows show them.
#pragma once

#include "sim/state.h"

#include <span>
#include <string>
#include <string_view>

namespace sim {

struct Instance {
    int adapter = 0, unit = 0;  // from 0
};

// Reads words one after the other. A step that fails sets `error` and returns false.
class PlaceReader {
  public:
    PlaceReader(const State& state, std::span<const std::string> words) : state_(state), words_(words) {}

    bool target();    // "lec", "ip.pvc", "driver"
    bool instance();  // "1.2"; nothing for the driver as a whole
    bool row();       // "row 3", or nothing
    bool field();     // of a table row when a row was given, else of a single reply

    std::span<const std::string> rest() const { return words_; }
    bool next(std::string& word);

    std::string error;
    std::string_view targetName;
    Instance where;
    int rowNumber = 0;
    const Request* request = nullptr;
    std::size_t fieldIndex = 0;

    Place place() const { return {request->id, where.adapter, where.unit, rowNumber, fieldIndex}; }
    const Field& chosen() const { return request->fields[fieldIndex]; }

  private:
    bool fail(std::string reason);

    const State& state_;
    std::span<const std::string> words_;
};

// Instances per adapter of a target: 0 for the driver as a whole.
int targetUnits(std::string_view target);

// The bytes that the field has now.
std::vector<std::uint8_t> currentBytes(const State& state, const Place& place);

}  // namespace sim
