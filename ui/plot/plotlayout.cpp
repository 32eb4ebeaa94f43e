#include "ui/plot/plotlayout.h"

#include "resources/pictureids.h"

namespace {

constexpr zMore staysMiddle{.right = 50, .down = 100};

constexpr zControlRow rows[] = {
    {.id = plotPLT, .kind = zKind::plot, .place = {4, 4, 252, 170}, .more = {.wider = 100, .higher = 100}},
    {.id = plotSaveBTN,
     .kind = zKind::bitmapButton,
     .place = {76, 180, 50, 18},
     .text = "Save...",
     .tooltip = "Writes the plot into a PNG, SVG or PDF file",
     .more = staysMiddle},
    {.id = plotCloseBTN,
     .kind = zKind::bitmapButton,
     .place = {134, 180, 50, 18},
     .text = "Close",
     .picture = closeBitmap,
     .style = zCancelButton,
     .more = staysMiddle},
};

}  // namespace

const zLayout plotLayout{.id = 0,
                         .name = "plot",
                         .caption = "Plot",
                         .width = 260,
                         .height = 203,
                         .font = {zFontRow::normal},
                         .icon = statsIcon,
                         .rows = rows};
