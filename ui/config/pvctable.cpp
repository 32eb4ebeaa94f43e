#include "ui/config/pvctable.h"

#include <fmt/format.h>

PvcTable::PvcTable(zTable& table, std::span<const char* const> labels, std::span<const char* const> samples)
    : myTable(table) {
    setColumns(labels, samples);
    setRowNumbers("99");
}

std::string PvcTable::vciText(std::uint16_t vci) {
    return fmt::format("0 / {}", vci);
}

std::string PvcTable::encapsulationText(std::int32_t encapsulation) {
    return encapsulation == 1 ? "LLC_SNAP" : "NULL";
}
