#include "resources/pictureids.h"
#include "ui/stats/statslayouts.h"

namespace {

constexpr const char* instances[] = {"LEC 1", "LEC 2", "LEC 3", "LEC 4"};

constexpr zControlRow rows[] = {
    {.kind = zKind::tabStrip,
     .place = {0, 0, 286, 20},
     .name = "lecTabs",
     .items = instances,
     .more = takesWidth},
    {.kind = zKind::groupBox, .place = {4, 20, 282, 74}, .text = "LEC", .name = "lec", .more = takesWidth},
    {.place = {12, 35, 20, 8}, .text = "State", .name = "stateLampLabel"},
    {.kind = zKind::lamp, .place = {34, 32, 18, 14}, .name = "stateLamp"},
    {.place = {58, 35, 50, 8}, .text = "ELAN Name:", .name = "elanNameLabel"},
    {.kind = zKind::edit, .place = {110, 33, 142, 12}, .text = "", .name = "elanName", .style = zReadOnly},
    {.place = {58, 50, 50, 8}, .text = "MAC Address:", .name = "macAddressLabel"},
    {.kind = zKind::edit,
     .place = {110, 48, 80, 12},
     .text = "00:00:00:00:00:00",
     .name = "macAddress",
     .style = zReadOnly},
    {.place = {194, 50, 42, 8}, .text = "ELAN Type:", .name = "elanTypeLabel"},
    {.kind = zKind::edit,
     .place = {238, 48, 44, 12},
     .text = "Ethernet",
     .name = "elanType",
     .style = zReadOnly},
    {.place = {58, 65, 50, 8}, .text = "Network Prefix:", .name = "networkPrefixLabel"},
    {.kind = zKind::edit,
     .place = {110, 63, 142, 12},
     .text = noPrefix,
     .name = "networkPrefix",
     .style = zReadOnly},
    {.place = {58, 80, 50, 8}, .text = "ESI/Selector:", .name = "esiSelectorLabel"},
    {.kind = zKind::edit,
     .place = {110, 78, 80, 12},
     .text = noEsi,
     .name = "esiSelector",
     .style = zReadOnly},
    {.place = {194, 80, 42, 8}, .text = "MTU:", .name = "mtuLabel"},
    {.kind = zKind::edit, .place = {238, 78, 44, 12}, .text = "1516", .name = "mtu", .style = zReadOnly},
    {.kind = zKind::table,
     .place = {4, 98, 282, 53},
     .name = "lesBusTable",
     .tooltip = "LES/BUS Connections",
     .more = {.wider = 100, .higher = 50}},
    {.kind = zKind::table,
     .place = {4, 155, 282, 61},
     .name = "lecTable",
     .tooltip = "LEC Connections",
     .more = {.down = 50, .wider = 100, .higher = 50}},
};

}  // namespace

const zLayout lecStatsLayout{.id = 574,
                             .name = "lecStats",
                             .caption = "LEC ...",
                             .width = statsPageWidth,
                             .height = statsPageHeight,
                             .font = {zFontRow::normal},
                             .rows = rows};
