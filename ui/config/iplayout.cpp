#include "ui/config/iplayout.h"

#include "resources/pictureids.h"
#include "ui/config/confids.h"
#include "ui/fieldmasks.h"

namespace {

constexpr zControlRow rows[] = {
    {.id = firstGB, .kind = zKind::groupBox, .place = {9, 6, 195, 44}, .text = "1577"},
    {.id = enableCB, .kind = zKind::checkBox, .place = {18, 16, 41, 14}, .text = "Enable"},
    {.id = pvcOnlyCB, .kind = zKind::checkBox, .place = {18, 31, 50, 13}, .text = "PVC Only"},
    {.id = ipLBL, .kind = zKind::staticText, .place = {79, 18, 43, 8}, .text = "IP Address:"},
    {.id = ipED,
     .kind = zKind::edit,
     .place = {126, 16, 70, 12},
     .tooltip = "Address of 1577 Client",
     .mask = &ipAddressField},
    {.id = subnetMaskLBL, .kind = zKind::staticText, .place = {73, 34, 51, 8}, .text = "Subnet Mask:"},
    {.id = subnetMaskED,
     .kind = zKind::edit,
     .place = {126, 32, 70, 12},
     .text = "255.255.255.0",
     .mask = &ipAddressField},
    {.id = secondGB, .kind = zKind::groupBox, .place = {8, 54, 244, 60}, .text = "ARP Server"},
    {.id = serverCB, .kind = zKind::checkBox, .place = {19, 64, 41, 14}, .text = "Enable"},
    {.id = serverIpLBL, .kind = zKind::staticText, .place = {79, 66, 43, 8}, .text = "IP Address:"},
    {.id = serverIpED, .kind = zKind::edit, .place = {126, 64, 70, 12}, .mask = &ipAddressField},
    {.id = networkPrefixLBL, .kind = zKind::staticText, .place = {18, 82, 54, 8}, .text = "Network Prefix:"},
    {.id = networkPrefixED,
     .kind = zKind::edit,
     .place = {18, 95, 137, 12},
     .text = "47:00:00:00:00:00:00:00:00:00:00:00:00",
     .mask = &networkPrefixField},
    {.id = esiSelectorLBL, .kind = zKind::staticText, .place = {166, 82, 49, 10}, .text = "ESI/Selector:"},
    {.id = esiSelectorED,
     .kind = zKind::edit,
     .place = {166, 95, 78, 12},
     .text = "11:22:33:44:55:66-01",
     .mask = &esiSelectorField},
    {.id = pvcTableLBL, .kind = zKind::staticText, .place = {84, 119, 42, 8}, .text = "PVC Table:"},
    {.id = pvcTBL, .kind = zKind::table, .place = {19, 132, 169, 55}},
    {.id = addBTN,
     .kind = zKind::bitmapButton,
     .place = {203, 126, 50, 18},
     .text = "Add",
     .tooltip = "Add New PVC",
     .picture = addBitmap},
    {.id = modifyBTN,
     .kind = zKind::bitmapButton,
     .place = {203, 147, 50, 18},
     .text = "Modify",
     .tooltip = "Modify Selected PVC",
     .picture = modifyBitmap},
    {.id = deleteBTN,
     .kind = zKind::bitmapButton,
     .place = {203, 169, 50, 18},
     .text = "Delete",
     .tooltip = "Delete Selected PVC",
     .picture = deleteBitmap},
};

constexpr unsigned withServer = ipEnabled | serverUsed;
constexpr unsigned withForeignServer = withServer | serverForeign;

constexpr zEnableRow rules[] = {
    {pvcOnlyCB, ipEnabled},
    {ipED, ipEnabled},
    {ipLBL, ipEnabled},
    {subnetMaskED, ipEnabled},
    {subnetMaskLBL, ipEnabled},
    {pvcTableLBL, ipEnabled},
    {pvcTBL, ipEnabled},
    {addBTN, ipEnabled},
    {modifyBTN, ipEnabled},
    {deleteBTN, ipEnabled},
    {serverCB, withServer},
    {serverIpED, withForeignServer},
    {serverIpLBL, withForeignServer},
    {networkPrefixED, withForeignServer},
    {networkPrefixLBL, withForeignServer},
    {esiSelectorED, withForeignServer},
    {esiSelectorLBL, withForeignServer},
};

constexpr zNeedRow needs[] = {{ipEnabled, "Switch on Enable"},
                              {serverUsed, "Switch off PVC Only"},
                              {serverForeign, "Switch off Enable of the ARP server"}};

}  // namespace

const zLayout ip1577PageLayout{.id = 570,
                               .name = "ip1577Page",
                               .caption = "1577",
                               .width = 284,
                               .height = 220,
                               .font = {zFontRow::normal},
                               .rows = rows};
const std::span<const zEnableRow> ip1577PageRules = rules;
const std::span<const zNeedRow> ip1577PageNeeds = needs;
