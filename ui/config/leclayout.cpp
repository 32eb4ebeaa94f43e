#include "ui/config/leclayout.h"

#include "resources/pictureids.h"
#include "ui/config/confids.h"
#include "ui/fieldmasks.h"

namespace {

constexpr const char* clients[] = {"LEC 1", "LEC 2", "LEC 3", "LEC 4"};
constexpr const char* elanTypes[] = {"Ethernet", "TokenRing"};
constexpr const char* elanMtus[] = {"1516", "4544", "9234"};

constexpr zControlRow rows[] = {
    {.id = lecTB, .kind = zKind::tabStrip, .place = {0, 0, 262, 20}, .items = clients},
    {.kind = zKind::groupBox, .place = {4, 20, 250, 58}, .text = "LEC", .name = "lec"},
    {.id = enableCB,
     .kind = zKind::checkBox,
     .place = {12, 32, 41, 13},
     .text = "Enable",
     .tooltip = "Enable Current Client"},
    {.id = pvcOnlyCB, .kind = zKind::checkBox, .place = {64, 32, 50, 13}, .text = "PVC Only"},
    {.id = macAddressLBL, .kind = zKind::staticText, .place = {130, 34, 48, 8}, .text = "MAC Address:"},
    {.id = macAddressED, .kind = zKind::edit, .place = {182, 32, 64, 12}, .style = zReadOnly},
    {.id = elanNameLBL, .kind = zKind::staticText, .place = {12, 47, 47, 8}, .text = "ELAN Name:"},
    {.id = elanNameED, .kind = zKind::edit, .place = {12, 58, 50, 12}, .mask = &elanNameField},
    {.id = elanTypeLBL, .kind = zKind::staticText, .place = {71, 47, 45, 8}, .text = "ELAN Type:"},
    {.id = elanTypeCBO, .kind = zKind::dropDown, .place = {71, 57, 60, 35}, .items = elanTypes},
    {.id = elanMtuLBL, .kind = zKind::staticText, .place = {139, 47, 60, 8}, .text = "ELAN MTU Size:"},
    {.id = elanMtuCBO, .kind = zKind::dropDown, .place = {139, 57, 54, 40}, .items = elanMtus},
    {.id = l3MtuLBL, .kind = zKind::staticText, .place = {203, 47, 46, 8}, .text = "L3 MTU Size:"},
    {.id = l3MtuED,
     .kind = zKind::numberEdit,
     .place = {202, 58, 44, 12},
     .tooltip = "Layer 3 MTU Size",
     .mask = &fourDigitsField},
    {.kind = zKind::groupBox, .place = {4, 82, 250, 42}, .text = "LECS / LES ATM Address", .name = "address"},
    {.id = lecsRB,
     .kind = zKind::radioButton,
     .place = {12, 94, 35, 10},
     .text = "LECS",
     .tooltip = "Use LECS for Registration",
     .style = zFirstOfGroup},
    {.id = lesRB,
     .kind = zKind::radioButton,
     .place = {12, 108, 29, 10},
     .text = "LES",
     .tooltip = "Bypass LECS & Specify LES"},
    {.kind = zKind::frame, .place = {52, 92, 1, 30}, .name = "addressLine"},
    {.id = networkPrefixLBL, .kind = zKind::staticText, .place = {60, 94, 54, 8}, .text = "Network Prefix:"},
    {.id = networkPrefixED,
     .kind = zKind::edit,
     .place = {114, 92, 137, 12},
     .text = "47:00:00:00:00:00:00:00:00:00:00:00:00",
     .tooltip = "Address of LECS or LES if bypassed",
     .mask = &networkPrefixField},
    {.id = esiSelectorLBL, .kind = zKind::staticText, .place = {60, 108, 49, 10}, .text = "ESI/Selector:"},
    {.id = esiSelectorED,
     .kind = zKind::edit,
     .place = {114, 108, 78, 12},
     .text = "00:00:00:00:00:00-00",
     .mask = &esiSelectorField},
    {.id = pvcTableLBL, .kind = zKind::staticText, .place = {84, 128, 42, 8}, .text = "PVC Table:"},
    {.id = pvcTBL, .kind = zKind::table, .place = {19, 138, 169, 56}},
    {.id = addBTN,
     .kind = zKind::bitmapButton,
     .place = {205, 132, 50, 18},
     .text = "Add",
     .tooltip = "Add New PVC",
     .picture = addBitmap},
    {.id = modifyBTN,
     .kind = zKind::bitmapButton,
     .place = {205, 154, 50, 18},
     .text = "Modify",
     .tooltip = "Modify Selected PVC",
     .picture = modifyBitmap},
    {.id = deleteBTN,
     .kind = zKind::bitmapButton,
     .place = {205, 176, 50, 18},
     .text = "Delete",
     .tooltip = "Delete Selected PVC",
     .picture = deleteBitmap},
};

constexpr unsigned withServers = clientEnabled | serversUsed;

constexpr zEnableRow rules[] = {
    {pvcOnlyCB, clientEnabled},     {pvcTableLBL, clientEnabled},    {addBTN, clientEnabled},
    {modifyBTN, clientEnabled},     {deleteBTN, clientEnabled},      {l3MtuED, clientEnabled},
    {l3MtuLBL, clientEnabled},      {elanNameED, withServers},       {elanNameLBL, withServers},
    {elanTypeCBO, withServers},     {elanTypeLBL, withServers},      {elanMtuCBO, withServers},
    {elanMtuLBL, withServers},      {lecsRB, withServers},           {lesRB, withServers},
    {networkPrefixED, withServers}, {networkPrefixLBL, withServers}, {esiSelectorED, withServers},
    {esiSelectorLBL, withServers},
};

constexpr zNeedRow needs[] = {{clientEnabled, "Switch on Enable"}, {serversUsed, "Switch off PVC Only"}};

}  // namespace

const zLayout lecPageLayout{.id = 567,
                            .name = "lecPage",
                            .caption = "LEC...",
                            .width = 284,
                            .height = 220,
                            .font = {zFontRow::normal},
                            .rows = rows};
const std::span<const zEnableRow> lecPageRules = rules;
const std::span<const zNeedRow> lecPageNeeds = needs;
