// The colours and dashes of a plot. With eight series each pair of dash and brightness occurs once, so that
// lines are told apart without colours, too; the colours are of those that the colour-blind tell apart.
#pragma once

#include <array>
#include <cstdint>

struct zPlotLook {
    static constexpr int lines = 8;

    // 0xrrggbb
    unsigned ground, text, grid, select;
    std::array<unsigned, lines> line, band;  // the band is paler
    unsigned anyBand;  // shared by all bands of a plot with many lines; paler than the grid

    void setLine(int number, unsigned colour);
};

// `ground` and `text` are the user's: series are lighter on a dark ground.
zPlotLook zPlotLookOn(unsigned ground, unsigned text, unsigned grid, unsigned select);
zPlotLook zPlotLookOnPaper();

// Whether the line of this number is drawn in a column, or lets the ground through, and how many columns from
// this one on are alike.
struct zDash {
    bool drawn;
    int columns;
};
zDash zDashAt(int line, std::int64_t column);
