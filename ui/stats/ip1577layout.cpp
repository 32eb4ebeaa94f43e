#include "resources/pictureids.h"
#include "ui/stats/statslayouts.h"

namespace {

constexpr zControlRow rows[] = {
    {.kind = zKind::groupBox, .place = {4, 4, 60, 94}, .text = "1577", .name = "service"},
    {.place = {12, 19, 20, 8}, .text = "State", .name = "stateLampLabel"},
    {.kind = zKind::lamp, .place = {36, 16, 18, 14}, .name = "stateLamp"},
    {.kind = zKind::groupBox,
     .place = {68, 4, 218, 45},
     .text = "1577 Statistics",
     .name = "statistics",
     .more = takesWidth},
    {.place = {76, 19, 74, 8}, .text = "Received Packets:", .name = "rxPacketsLabel"},
    {.kind = zKind::edit, .place = {152, 17, 56, 12}, .text = "0", .name = "rxPackets", .style = zReadOnly},
    {.place = {76, 34, 74, 8}, .text = "Transmitted Packets:", .name = "txPacketsLabel"},
    {.kind = zKind::edit, .place = {152, 32, 56, 12}, .text = "0", .name = "txPackets", .style = zReadOnly},
    {.kind = zKind::groupBox,
     .place = {68, 53, 218, 45},
     .text = "1577 Errors",
     .name = "errors",
     .more = takesWidth},
    {.place = {76, 68, 74, 8}, .text = "Rx Dropped Packets:", .name = "rxDroppedLabel"},
    {.kind = zKind::edit, .place = {152, 66, 56, 12}, .text = "0", .name = "rxDropped", .style = zReadOnly},
    {.place = {76, 83, 74, 8}, .text = "Tx Dropped Packets:", .name = "txDroppedLabel"},
    {.kind = zKind::edit, .place = {152, 81, 56, 12}, .text = "0", .name = "txDropped", .style = zReadOnly},
    {.place = {4, 102, 120, 8}, .text = "Connection Table:", .name = "tableLabel"},
    {.kind = zKind::table, .place = {4, 114, 282, 102}, .name = "connectionTable", .more = takesAll},
};

}  // namespace

const zLayout ip1577StatsLayout{.id = 577,
                                .name = "ip1577Stats",
                                .caption = "1577",
                                .width = statsPageWidth,
                                .height = statsPageHeight,
                                .font = {zFontRow::normal},
                                .rows = rows};
