#include "ui/config/lcpvcdlg.h"

#include "model/masks.h"
#include "resources/pictureids.h"
#include "toolkit/button.h"
#include "toolkit/edit.h"
#include "ui/config/confids.h"

AtmBridgedPvc bridgedPvcXferBuffer;

namespace {

enum LecPvcControl {
    pvcMacED = 671,
    pvcVciED = 703,
    llcSnapRB = 704,
    nullRB = 705,
    pvcOkBTN = 706,
    pvcCancelBTN = 707,
    broadcastCB = 708,
    pvcMacLBL = 709,
    pvcVciLBL = 710,
};

constexpr zControlRow rows[] = {
    {.id = pvcMacLBL, .kind = zKind::staticText, .place = {26, 18, 51, 8}, .text = "MAC Address:"},
    {.id = pvcMacED, .kind = zKind::edit, .place = {26, 30, 70, 12}, .mask = macAddressMask},
    {.id = pvcVciLBL, .kind = zKind::staticText, .place = {26, 55, 19, 8}, .text = "VCI:"},
    {.id = pvcVciED, .kind = zKind::numberEdit, .place = {26, 66, 32, 12}, .mask = fourDigitsMask},
    {.kind = zKind::groupBox, .place = {114, 18, 63, 42}, .text = "Encapsulation", .name = "encapsulation"},
    {.id = llcSnapRB,
     .kind = zKind::radioButton,
     .place = {119, 30, 50, 13},
     .text = "LLC_Snap",
     .style = zFirstOfGroup},
    {.id = nullRB, .kind = zKind::radioButton, .place = {119, 43, 29, 14}, .text = "Null"},
    {.id = broadcastCB, .kind = zKind::checkBox, .place = {116, 66, 50, 13}, .text = "BroadCast"},
    {.id = pvcOkBTN,
     .kind = zKind::bitmapButton,
     .place = {40, 98, 50, 18},
     .text = "OK",
     .picture = okBitmap,
     .style = zDefaultButton},
    {.id = pvcCancelBTN,
     .kind = zKind::bitmapButton,
     .place = {122, 98, 50, 18},
     .text = "Cancel",
     .picture = cancelBitmap,
     .style = zCancelButton},
};

constexpr zLayout layout{.id = 564,
                         .name = "lecPvc",
                         .caption = "PVC Settings",
                         .width = 216,
                         .height = 137,
                         .font = {zFontRow::normal},
                         .icon = programIcon,
                         .rows = rows};

}  // namespace

DLecPvcDLG::DLecPvcDLG(zWindow& parent) : zFormDialog(parent, layout) {
    Setup();
    board().control<zEdit>(pvcMacED).bind(&mac_);
    board().control<zNumberEdit>(pvcVciED).bind(&vci_);
    board().group(llcSnapRB).bind(encapsulation_);
    board().control<zCheckBox>(broadcastCB).bind(&broadcast_);
    board().load();
    control<zBitmapButton>(pvcOkBTN).onClick = [this] { clickedOkBTN(); };
    control<zBitmapButton>(pvcCancelBTN).onClick = [this] { clickedCancelBTN(); };
    onClose = [this] { clickedCancelBTN(); };
}

void DLecPvcDLG::Setup() {
    const AtmBridgedPvc& pvc = bridgedPvcXferBuffer;
    mac_ = pvc.mac.GetFMacAddress();
    std::erase(mac_, ':');
    vci_ = pvc.vci;
    encapsulation_ = pvc.encapsulation ? llcSnapRB : nullRB;
    broadcast_ = pvc.broadcast;
}

void DLecPvcDLG::StoreDefaults() {
    board().store();
    AtmBridgedPvc& pvc = bridgedPvcXferBuffer;
    pvc.mac = control<zEdit>(pvcMacED).text();
    pvc.vci = static_cast<std::uint16_t>(vci_);
    const bool llc = encapsulation_ == llcSnapRB;
    if (llc != (pvc.encapsulation != 0)) pvc.encapsulation = llc;
    pvc.broadcast = broadcast_;
}

void DLecPvcDLG::clickedOkBTN() {
    StoreDefaults();
    okFlag_ = true;
    endModal();
}

void DLecPvcDLG::clickedCancelBTN() {
    endModal();
}
