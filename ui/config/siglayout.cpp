#include "ui/config/siglayout.h"

#include "ui/config/confids.h"
#include "ui/fieldmasks.h"

namespace {

constexpr const char* revisions[] = {"3.0", "3.1"};

constexpr zControlRow rows[] = {
    {.id = firstGB, .kind = zKind::groupBox, .place = {49, 5, 165, 87}, .text = "Signalling"},
    {.kind = zKind::staticText, .place = {80, 19, 50, 8}, .text = "UNI Revision:", .name = "revisionLabel"},
    {.id = uniRevisionCBO, .kind = zKind::dropDown, .place = {129, 17, 46, 34}, .items = revisions},
    {.kind = zKind::staticText, .place = {103, 37, 45, 8}, .text = "SVC Range:", .name = "rangeLabel"},
    {.kind = zKind::staticText, .place = {80, 53, 19, 8}, .text = "VPI:", .name = "vpiLabel"},
    {.id = vpiED, .kind = zKind::edit, .place = {105, 52, 29, 12}, .text = "0", .style = zReadOnly},
    {.kind = zKind::staticText, .place = {80, 71, 19, 8}, .text = "VCI:", .name = "vciLabel"},
    {.id = firstVciED, .kind = zKind::edit, .place = {105, 69, 29, 12}, .text = "32", .style = zReadOnly},
    {.kind = zKind::staticText, .place = {137, 71, 18, 8}, .text = "thru", .name = "thruLabel"},
    {.id = lastVciED, .kind = zKind::edit, .place = {157, 69, 29, 12}, .text = "1023", .style = zReadOnly},
    {.id = secondGB, .kind = zKind::groupBox, .place = {48, 97, 166, 94}, .text = "ILMI"},
    {.id = addrRegCB,
     .kind = zKind::checkBox,
     .place = {60, 112, 111, 10},
     .text = "Enable Address Registration",
     .tooltip = "Enable Registration with Switch"},
    {.id = networkPrefixLBL, .kind = zKind::staticText, .place = {60, 126, 55, 8}, .text = "Network Prefix:"},
    {.id = registeredPrefixED,
     .kind = zKind::edit,
     .place = {60, 138, 140, 12},
     .text = "47:00:00:00:00:00:00:00:00:00:00:00:00",
     .mask = &networkPrefixField},
    {.id = portChangeCB,
     .kind = zKind::checkBox,
     .place = {60, 157, 105, 10},
     .text = "ILMI Port Change Detection",
     .tooltip = "Only disable for compatablity with some Switches"},
    {.id = otherPrefixesCB,
     .kind = zKind::checkBox,
     .place = {60, 171, 118, 14},
     .text = "Register Nonstandard Prefixes"},
};

constexpr zEnableRow rules[] = {
    {registeredPrefixED, unregistered},
    {networkPrefixLBL, unregistered},
    {portChangeCB, registered},
    {otherPrefixesCB, registered},
};

constexpr zNeedRow needs[] = {{registered, "Switch on Enable Address Registration"},
                              {unregistered, "Switch off Enable Address Registration"}};

}  // namespace

const zLayout signalPageLayout{.id = 571,
                               .name = "signalPage",
                               .caption = "Signalling",
                               .width = 284,
                               .height = 220,
                               .font = {zFontRow::normal},
                               .rows = rows};
const std::span<const zEnableRow> signalPageRules = rules;
const std::span<const zNeedRow> signalPageNeeds = needs;
