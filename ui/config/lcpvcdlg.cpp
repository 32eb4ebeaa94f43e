#include "ui/config/lcpvcdlg.h"

#include "toolkit/controls/edit.h"
#include "ui/config/confids.h"
#include "ui/fieldmasks.h"

#include <sstream>

AtmBridgedPvc bridgedPvcXferBuffer;

namespace {

constexpr zControlRow rows[] = {
    {.id = pvcMacLBL, .kind = zKind::staticText, .place = {26, 18, 51, 8}, .text = "MAC Address:"},
    {.id = pvcMacED, .kind = zKind::edit, .place = {26, 30, 70, 12}, .mask = &macAddressField},
    {.id = pvcVciLBL, .kind = zKind::staticText, .place = {26, 55, 19, 8}, .text = "VCI:"},
    {.id = pvcVciED, .kind = zKind::numberEdit, .place = {26, 66, 32, 12}, .mask = &fourDigitsField},
    {.kind = zKind::groupBox, .place = {114, 18, 63, 42}, .text = "Encapsulation", .name = "encapsulation"},
    {.id = llcSnapRB,
     .kind = zKind::radioButton,
     .place = {119, 30, 50, 13},
     .text = "LLC_Snap",
     .style = zFirstOfGroup},
    {.id = nullRB, .kind = zKind::radioButton, .place = {119, 43, 29, 14}, .text = "Null"},
    {.id = broadcastCB, .kind = zKind::checkBox, .place = {116, 66, 50, 13}, .text = "BroadCast"},
    okRow({40, 98, 50, 18}),
    cancelRow({122, 98, 50, 18}),
    messageRow({6, 120, 204, 16}),
};

constexpr AdvisedField advised[] = {{pvcMacED, "mac"}, {pvcVciED, "vci"}};

constexpr zLayout layout{.id = 564,
                         .name = "lecPvc",
                         .caption = "PVC Settings",
                         .width = 216,
                         .height = 137,
                         .icon = programIcon,
                         .rows = rows};

}  // namespace

DLecPvcDLG::DLecPvcDLG(zWindow& parent, VciOwners owners)
    : PvcDialog(parent, layout, pvcMacED, std::move(owners)) {
    control<zCheckBox>(broadcastCB).bind(&broadcast_);
    Setup();
}

void DLecPvcDLG::Setup() {
    const AtmBridgedPvc& pvc = bridgedPvcXferBuffer;
    std::string digits = pvc.mac.GetFMacAddress();
    std::erase(digits, ':');
    broadcast_ = pvc.broadcast;
    show(digits, pvc.vci, pvc.encapsulation != 0);
}

void DLecPvcDLG::StoreDefaults() {
    AtmBridgedPvc& pvc = bridgedPvcXferBuffer;
    store(pvc);
    pvc.mac = control<zEdit>(pvcMacED).text();
    pvc.broadcast = broadcast_;
}

std::vector<Finding> DLecPvcDLG::findings() const {
    AtmBridgedPvc pvc = bridgedPvcXferBuffer;
    std::istringstream(shownAddress()) >> pvc.mac;
    pvc.vci = static_cast<std::uint16_t>(shownVci());
    std::vector<Finding> all = CheckEntry(pvc);
    checkOwner(all, owners(), pvc.vci);
    return all;
}

std::span<const AdvisedField> DLecPvcDLG::advisedFields() const {
    return advised;
}
