#include "ui/config/ippvcdlg.h"

#include "ui/config/confids.h"
#include "ui/fieldmasks.h"

AtmRoutedPvc pvcXferBuffer;

namespace {

constexpr zControlRow rows[] = {
    {.id = pvcIpLBL, .kind = zKind::staticText, .place = {26, 18, 43, 8}, .text = "IP Address:"},
    {.id = pvcIpED, .kind = zKind::edit, .place = {26, 30, 70, 12}, .mask = &ipAddressField},
    {.kind = zKind::staticText, .place = {26, 48, 19, 8}, .text = "VCI:", .name = "vciLabel"},
    {.id = pvcVciED, .kind = zKind::numberEdit, .place = {26, 59, 32, 12}, .mask = &fourDigitsField},
    {.id = secondGB, .kind = zKind::groupBox, .place = {114, 18, 63, 53}, .text = "Encapsulation"},
    {.id = llcSnapRB,
     .kind = zKind::radioButton,
     .place = {119, 33, 50, 13},
     .text = "LLC_Snap",
     .style = zFirstOfGroup},
    {.id = nullRB, .kind = zKind::radioButton, .place = {119, 51, 29, 14}, .text = "Null"},
    okRow({40, 98, 50, 18}),
    cancelRow({122, 98, 50, 18}),
    messageRow({6, 120, 204, 16}),
};

constexpr AdvisedField advised[] = {{pvcIpED, "ip"}, {pvcVciED, "vci"}};

constexpr zLayout layout{.id = 563,
                         .name = "ipPvc",
                         .caption = "PVC Settings",
                         .width = 216,
                         .height = 137,
                         .icon = programIcon,
                         .rows = rows};

}  // namespace

DIpPvcDLG::DIpPvcDLG(zWindow& parent, VciOwners owners)
    : PvcDialog(parent, layout, pvcIpED, std::move(owners)) {
    SetDefaults();
}

void DIpPvcDLG::SetDefaults() {
    const AtmRoutedPvc& pvc = pvcXferBuffer;
    show(pvc.ip.GetFIPAddress(), pvc.vci, pvc.encapsulation == 1);
}

void DIpPvcDLG::StoreDefaults() {
    pvcXferBuffer.ip = store(pvcXferBuffer);
}

std::vector<Finding> DIpPvcDLG::findings() const {
    AtmRoutedPvc pvc = pvcXferBuffer;
    pvc.vci = static_cast<std::uint16_t>(shownVci());
    std::vector<Finding> all = CheckEntry(pvc, shownAddress());
    checkOwner(all, owners(), pvc.vci);
    return all;
}

std::span<const AdvisedField> DIpPvcDLG::advisedFields() const {
    return advised;
}
