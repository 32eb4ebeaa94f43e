#include "ui/config/lecslayout.h"

#include "ui/config/confids.h"
#include "ui/fieldmasks.h"

namespace {

constexpr const char* mtus[] = {"1516", "4544", "9234"};

constexpr zControlRow rows[] = {
    {.kind = zKind::groupBox, .place = {4, 4, 248, 66}, .text = "LECS", .name = "lecs"},
    {.id = enableCB,
     .kind = zKind::checkBox,
     .place = {12, 16, 41, 14},
     .text = "Enable",
     .tooltip = "Enable LECS on current Adapter"},
    {.id = wellKnownAddressCB,
     .kind = zKind::checkBox,
     .place = {143, 16, 102, 14},
     .text = "Use 'Well Known Address'",
     .tooltip = "Use 'Well Known Address' as LECS Address"},
    {.id = networkPrefixLBL, .kind = zKind::staticText, .place = {12, 38, 54, 8}, .text = "Network Prefix:"},
    {.id = networkPrefixED, .kind = zKind::edit, .place = {12, 50, 140, 12}, .mask = &networkPrefixField},
    {.id = esiSelectorLBL, .kind = zKind::staticText, .place = {162, 38, 53, 8}, .text = "ESI / Selector:"},
    {.id = esiSelectorED, .kind = zKind::edit, .place = {162, 50, 78, 12}, .mask = &esiSelectorField},
    {.kind = zKind::groupBox, .place = {4, 74, 117, 50}, .text = "Default MTU Sizes", .name = "mtus"},
    {.id = etherMtuLBL, .kind = zKind::staticText, .place = {12, 89, 35, 8}, .text = "Ethernet:"},
    {.id = etherMtuCBO, .kind = zKind::dropDown, .place = {66, 87, 48, 41}, .items = mtus},
    {.id = tokenRingMtuLBL, .kind = zKind::staticText, .place = {12, 107, 45, 8}, .text = "Token Ring:"},
    {.id = tokenRingMtuCBO, .kind = zKind::dropDown, .place = {66, 107, 48, 41}, .items = mtus},
    {.kind = zKind::groupBox, .place = {148, 74, 102, 50}, .text = "Default ELAN Type", .name = "elanType"},
    {.id = ethernetRB,
     .kind = zKind::radioButton,
     .place = {166, 88, 43, 13},
     .text = "Ethernet",
     .style = zFirstOfGroup},
    {.id = tokenRingRB, .kind = zKind::radioButton, .place = {166, 106, 54, 13}, .text = "Token Ring"},
};

constexpr zEnableRow rules[] = {
    {wellKnownAddressCB, lecsEnabled}, {networkPrefixED, lecsEnabled}, {networkPrefixLBL, lecsEnabled},
    {esiSelectorED, lecsEnabled},      {esiSelectorLBL, lecsEnabled},  {etherMtuCBO, lecsEnabled},
    {etherMtuLBL, lecsEnabled},        {tokenRingMtuCBO, lecsEnabled}, {tokenRingMtuLBL, lecsEnabled},
    {ethernetRB, lecsEnabled},         {tokenRingRB, lecsEnabled},
};

constexpr zNeedRow needs[] = {{lecsEnabled, "Switch on Enable"}};

}  // namespace

const zLayout lecsPageLayout{.id = 569,
                             .name = "lecsPage",
                             .caption = "LECS",
                             .width = 284,
                             .height = 220,
                             .font = {zFontRow::normal},
                             .rows = rows};
const std::span<const zEnableRow> lecsPageRules = rules;
const std::span<const zNeedRow> lecsPageNeeds = needs;
