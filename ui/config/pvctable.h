// Tables of configured PVCs with numbered rows.
#pragma once

#include "ui/mytable.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

class PvcTable : public myTable {
  protected:
    PvcTable(zTable& table, std::span<const char* const> labels, std::span<const char* const> samples);

    // Makes the text of a column.
    template <class Pvc> using Cell = std::string (*)(const Pvc&);

    // Shows the list; its last row becomes the active one.
    template <class Pvc> void show(const std::vector<Pvc>& pvcs, std::span<const Cell<Pvc>> cells) {
        resize(static_cast<int>(cells.size()), static_cast<int>(pvcs.size()));
        int row = 0;
        for (const Pvc& pvc : pvcs) {
            ++row;
            int column = 0;
            for (const Cell<Pvc> cell : cells) SetCellText({++column, row}, cell(pvc));
        }
        setActiveCell({1, row});
    }

    static std::string vciText(std::uint16_t vci);  // "0 / VCI": the VPI is always 0
    static std::string encapsulationText(std::int32_t encapsulation);
};
