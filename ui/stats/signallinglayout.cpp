#include "resources/pictureids.h"
#include "ui/stats/statslayouts.h"

namespace {

constexpr zControlRow rows[] = {
    {.kind = zKind::groupBox, .place = {4, 4, 80, 66}, .text = "Signalling State", .name = "states"},
    {.place = {12, 19, 42, 8}, .text = "ILMI:", .name = "ilmiLampLabel"},
    {.kind = zKind::lamp, .place = {58, 16, 18, 14}, .name = "ilmiLamp"},
    {.place = {12, 35, 42, 8}, .text = "QSAAL:", .name = "saalLampLabel"},
    {.kind = zKind::lamp, .place = {58, 32, 18, 14}, .name = "saalLamp"},
    {.place = {12, 51, 42, 8}, .text = "Signalling:", .name = "signallingLampLabel"},
    {.kind = zKind::lamp, .place = {58, 48, 18, 14}, .name = "signallingLamp"},

    {.kind = zKind::groupBox,
     .place = {88, 4, 198, 66},
     .text = "State Detail",
     .name = "details",
     .more = takesWidth},
    {.place = {96, 19, 42, 8}, .text = "ILMI:", .name = "ilmiLabel"},
    {.kind = zKind::edit,
     .place = {142, 17, 130, 12},
     .text = "ILMI Static Registration",
     .name = "ilmi",
     .style = zReadOnly},
    {.place = {96, 35, 42, 8}, .text = "QSAAL:", .name = "saalLabel"},
    {.kind = zKind::edit,
     .place = {142, 33, 130, 12},
     .text = "Outgoing disconnection pending",
     .name = "saal",
     .style = zReadOnly},
    {.place = {96, 51, 42, 8}, .text = "Signalling:", .name = "signallingLabel"},
    {.kind = zKind::edit,
     .place = {142, 49, 130, 12},
     .text = "Signalling Disconnected",
     .name = "signalling",
     .style = zReadOnly},

    {.kind = zKind::groupBox,
     .place = {4, 74, 282, 46},
     .text = "ATM End Station Address (AESA)",
     .name = "address",
     .more = takesWidth},
    {.place = {12, 88, 56, 8}, .text = "Network Prefix:", .name = "networkPrefixLabel"},
    {.kind = zKind::edit,
     .place = {72, 86, 142, 12},
     .text = noPrefix,
     .name = "networkPrefix",
     .style = zReadOnly},
    {.place = {12, 104, 56, 8}, .text = "ESI/Selector:", .name = "esiSelectorLabel"},
    {.kind = zKind::edit,
     .place = {72, 102, 80, 12},
     .text = noEsi,
     .name = "esiSelector",
     .style = zReadOnly},

    {.place = {4, 124, 120, 8}, .text = "Signalling Statistics:", .name = "tableLabel"},
    {.kind = zKind::table, .place = {4, 136, 282, 80}, .name = "signallingTable", .more = takesAll},
};

}  // namespace

const zLayout signallingStatsLayout{.id = 572,
                                    .name = "signallingStats",
                                    .caption = "Signalling",
                                    .width = statsPageWidth,
                                    .height = statsPageHeight,
                                    .font = {zFontRow::normal},
                                    .rows = rows};
