#include "resources/pictureids.h"
#include "ui/stats/statslayouts.h"

namespace {

constexpr const char* instances[] = {"LES 1", "LES 2", "LES 3", "LES 4", "LES 5", "LES 6", "LES 7", "LES 8"};

constexpr zControlRow rows[] = {
    {.kind = zKind::tabStrip,
     .place = {0, 0, 286, 20},
     .name = "lesTabs",
     .items = instances,
     .more = takesWidth},
    {.kind = zKind::groupBox, .place = {4, 20, 282, 74}, .text = "LES", .name = "les", .more = takesWidth},
    {.place = {12, 35, 20, 8}, .text = "State", .name = "stateLampLabel"},
    {.kind = zKind::lamp, .place = {34, 32, 18, 14}, .name = "stateLamp"},
    {.place = {58, 35, 50, 8}, .text = "ELAN Name:", .name = "elanNameLabel"},
    {.kind = zKind::edit, .place = {110, 33, 142, 12}, .text = "", .name = "elanName", .style = zReadOnly},
    {.place = {58, 50, 50, 8}, .text = "ELAN Type:", .name = "elanTypeLabel"},
    {.kind = zKind::edit,
     .place = {110, 48, 44, 12},
     .text = "Ethernet",
     .name = "elanType",
     .style = zReadOnly},
    {.place = {194, 50, 42, 8}, .text = "MTU Size:", .name = "mtuLabel"},
    {.kind = zKind::edit, .place = {238, 48, 44, 12}, .text = "1516", .name = "mtu", .style = zReadOnly},
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
    {.kind = zKind::groupBox,
     .place = {4, 98, 282, 43},
     .text = "BUS ATM Address",
     .name = "bus",
     .more = takesWidth},
    {.place = {58, 112, 50, 8}, .text = "Network Prefix:", .name = "busNetworkPrefixLabel"},
    {.kind = zKind::edit,
     .place = {110, 110, 142, 12},
     .text = noPrefix,
     .name = "busNetworkPrefix",
     .style = zReadOnly},
    {.place = {58, 126, 50, 8}, .text = "ESI/Selector:", .name = "busEsiSelectorLabel"},
    {.kind = zKind::edit,
     .place = {110, 124, 80, 12},
     .text = noEsi,
     .name = "busEsiSelector",
     .style = zReadOnly},
    {.place = {4, 145, 120, 8}, .text = "Client Service Table:", .name = "tableLabel"},
    {.kind = zKind::table, .place = {4, 155, 282, 61}, .name = "clientTable", .more = takesAll},
};

}  // namespace

const zLayout lesStatsLayout{.id = 575,
                             .name = "lesStats",
                             .caption = "LES ...",
                             .width = statsPageWidth,
                             .height = statsPageHeight,
                             .font = {zFontRow::normal},
                             .rows = rows};
