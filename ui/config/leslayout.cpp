#include "ui/config/leslayout.h"

#include "resources/pictureids.h"
#include "ui/config/confids.h"
#include "ui/fieldmasks.h"

namespace {

constexpr const char* servers[] = {"LES 1", "LES 2", "LES 3", "LES 4", "LES 5", "LES 6", "LES 7", "LES 8"};
constexpr const char* elanMtus[] = {"1516", "4544", "9234"};

constexpr zControlRow rows[] = {
    {.id = lesTB, .kind = zKind::tabStrip, .place = {0, 0, 262, 20}, .items = servers},
    {.kind = zKind::groupBox, .place = {4, 24, 125, 58}, .text = "LES", .name = "les"},
    {.id = enableCB,
     .kind = zKind::checkBox,
     .place = {12, 34, 41, 13},
     .text = "Enable",
     .tooltip = "Enable Current Client"},
    {.id = elanNameLBL, .kind = zKind::staticText, .place = {12, 49, 47, 8}, .text = "ELAN Name:"},
    {.id = elanNameED, .kind = zKind::edit, .place = {12, 63, 50, 12}, .mask = &elanNameField},
    {.id = elanMtuLBL, .kind = zKind::staticText, .place = {71, 49, 55, 8}, .text = "ELAN MTU Size:"},
    {.id = elanMtuCBO, .kind = zKind::dropDown, .place = {72, 63, 48, 40}, .items = elanMtus},
    {.kind = zKind::groupBox, .place = {132, 24, 61, 58}, .text = "ELAN Type", .name = "elanType"},
    {.id = ethernetRB,
     .kind = zKind::radioButton,
     .place = {138, 40, 43, 14},
     .text = "Ethernet",
     .style = zFirstOfGroup},
    {.id = tokenRingRB, .kind = zKind::radioButton, .place = {138, 60, 52, 14}, .text = "Token Ring"},
    {.kind = zKind::groupBox, .place = {196, 24, 63, 58}, .text = "Strict", .name = "strict"},
    {.id = strictNameCB,
     .kind = zKind::checkBox,
     .place = {200, 40, 56, 14},
     .text = "ELAN Name",
     .tooltip = "Force Strict Name Prequisites"},
    {.id = strictMtuCB,
     .kind = zKind::checkBox,
     .place = {200, 60, 51, 13},
     .text = "MTU Size",
     .tooltip = "Force Strict MTU Size Prerequisites"},
    {.id = mappingsGB, .kind = zKind::groupBox, .place = {43, 90, 175, 92}, .text = "ELAN Client Mappings"},
    {.id = clientLB, .kind = zKind::listBox, .place = {51, 104, 97, 68}, .style = zSmallFont},
    {.id = addBTN,
     .kind = zKind::bitmapButton,
     .place = {158, 102, 50, 18},
     .text = "Add",
     .tooltip = "Add New Client",
     .picture = addBitmap},
    {.id = insertBTN,
     .kind = zKind::bitmapButton,
     .place = {158, 122, 50, 18},
     .text = "Insert",
     .tooltip = "Insert Clients from other LESs",
     .picture = insertBitmap},
    {.id = deleteBTN,
     .kind = zKind::bitmapButton,
     .place = {158, 143, 50, 18},
     .text = "Delete",
     .tooltip = "Delete Selected Client",
     .picture = deleteBitmap},
};

constexpr zEnableRow rules[] = {
    {elanNameLBL, serverEnabled},  {elanNameED, serverEnabled},  {elanMtuLBL, serverEnabled},
    {elanMtuCBO, serverEnabled},   {ethernetRB, serverEnabled},  {tokenRingRB, serverEnabled},
    {strictNameCB, serverEnabled}, {strictMtuCB, serverEnabled}, {clientLB, serverEnabled},
    {addBTN, serverEnabled},       {insertBTN, serverEnabled},   {deleteBTN, serverEnabled},
};

constexpr zNeedRow needs[] = {{serverEnabled, "Switch on Enable"}};

}  // namespace

const zLayout lesPageLayout{.id = 568,
                            .name = "lesPage",
                            .caption = "LES...",
                            .width = 284,
                            .height = 220,
                            .font = {zFontRow::normal},
                            .rows = rows};
const std::span<const zEnableRow> lesPageRules = rules;
const std::span<const zNeedRow> lesPageNeeds = needs;
