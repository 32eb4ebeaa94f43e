#include "ui/config/lecpage.h"

#include "driver/dai_api.h"
#include "model/settings.h"
#include "platform/debuglog.h"
#include "toolkit/button.h"
#include "toolkit/dropdown.h"
#include "toolkit/edit.h"
#include "toolkit/tabstrip.h"
#include "ui/config/confids.h"
#include "ui/config/lcpvcdlg.h"
#include "ui/config/leclayout.h"
#include "ui/config/listedit.h"
#include "ui/config/wellknown.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>

namespace {

constexpr std::array<unsigned, 3> elanMtuSizes{1516, 4544, 9234};  // by list position

// What of a PVC list is being changed, and what the user is asked when the driver does not follow.
StaticQuestion questionOf(PvcChange change) {
    switch (change) {
    case PvcChange::add:
        return {"Unable to Dynamically Add PVC\nDo you still want to modify Static Configuration?",
                "PVC Error"};
    case PvcChange::modify:
        return {"Unable to Dynamically Modify PVC\nDo you still want to modify Static Configuration?",
                "PVC Error"};
    case PvcChange::remove:
        break;
    }
    return {"Unable to Dynamically Delete PVC\nDo you still want to modify Static Configuration?",
            "PVC Error"};
}

LECXferBuffer& bufferOf(int lec) {
    return xferBuffer[static_cast<std::size_t>(lec)];
}

}  // namespace

const FieldRow<DConfigDlgLECPG, LECXferBuffer> DConfigDlgLECPG::fields[] = {
    {{macAddressED, &DConfigDlgLECPG::macText_}, &LECXferBuffer::macText},
    {{networkPrefixED, &DConfigDlgLECPG::networkPrefix_}, &LECXferBuffer::networkPrefix},
    {{esiSelectorED, &DConfigDlgLECPG::esiSelector_}, &LECXferBuffer::esiSelector},
    {{elanNameED, &DConfigDlgLECPG::elanName_}, &LECXferBuffer::elanName},
    {{l3MtuED, &DConfigDlgLECPG::l3Mtu_}, &LECXferBuffer::l3Mtu},
    {{lecsRB, &DConfigDlgLECPG::choice_}},
    {{elanTypeCBO, &DConfigDlgLECPG::elanType_}, &LECXferBuffer::elanType},
    {{elanMtuCBO, &DConfigDlgLECPG::elanMtu_}, &LECXferBuffer::mtuPosition},
    {{enableCB, &DConfigDlgLECPG::enabled_}, &LECXferBuffer::enabled},
    {{pvcOnlyCB, &DConfigDlgLECPG::pvcOnly_}, &LECXferBuffer::pvcOnly},
};

DConfigDlgLECPG::DConfigDlgLECPG(zFormDialog& dialog, zNotebook& notebook)
    : dialog_(dialog), board_(notebook.addPage(lecPageLayout)) {
    tvlog << "creating LEC Page" << std::endl;
    Setup(0);
    if (SetupIoctlDesc)
        control_ = std::make_unique<LecControl>(SetupIoctlDesc, static_cast<std::uint8_t>(currentAdapter));
    bindFields<DConfigDlgLECPG, LECXferBuffer>(*this, board_, fields);
    board_.load();
    table_ = std::make_unique<LECPGPvcTBL>(board_.control<zTable>(pvcTBL));
    table_->Update(0);
    table_->setActiveCell({0, 0});
    ToggleControls();

    board_.control<zCheckBox>(enableCB).onClick = [this] { ToggleControls(); };
    board_.control<zCheckBox>(pvcOnlyCB).onClick = [this] { ToggleControls(); };
    board_.control<zTabStrip>(lecTB).onSelect = [this](int lec) { selChangeLecTB(lec); };
    board_.group(lecsRB).onChoose = [this](int id) { clickedLECSRBGroup(id); };
    board_.control<zDropDown>(elanMtuCBO).onSelect = [this] { selChangeElanMTUCBO(); };
    board_.control<zBitmapButton>(addBTN).onClick = [this] { clickedAddBTN(); };
    board_.control<zBitmapButton>(modifyBTN).onClick = [this] { clickedModifyBTN(); };
    board_.control<zBitmapButton>(deleteBTN).onClick = [this] { clickedDeleteBTN(); };
}

void DConfigDlgLECPG::Setup(int i) {
    fieldsFromBuffer<DConfigDlgLECPG, LECXferBuffer>(*this, bufferOf(i), fields);
    choice_ = bufferOf(i).useLecs ? lecsRB : lesRB;
}

void DConfigDlgLECPG::setDefaults(int i) {
    tvlog << "Setting Defaults " << i << std::endl;
    Setup(i);
    board_.load();
    table_->Update(i);
}

void DConfigDlgLECPG::storeDefaults(int i) {
    board_.store();
    LECXferBuffer& buffer = bufferOf(i);
    fieldsToBuffer<DConfigDlgLECPG, LECXferBuffer>(*this, buffer, fields);
    const bool lecs = choice_ == lecsRB;
    if (lecs != (buffer.useLecs != 0)) buffer.useLecs = lecs;
}

void DConfigDlgLECPG::ToggleControls() {
    const bool on = board_.control<zCheckBox>(enableCB).checked();
    const bool servers = !board_.control<zCheckBox>(pvcOnlyCB).checked();
    board_.enable(lecPageRules, (on ? clientEnabled : 0U) | (servers ? serversUsed : 0U));
}

void DConfigDlgLECPG::clickedLECSRBGroup(int id) {
    auto& prefix = board_.control<zEdit>(networkPrefixED);
    auto& esi = board_.control<zEdit>(esiSelectorED);
    if (id == lecsRB) {
        prefix.store();
        esi.store();
        prefix.setText(wellKnownAddress.networkPrefix);
        esi.setText(wellKnownAddress.esiSelector);
    } else {
        prefix.load();
        esi.load();
    }
}

void DConfigDlgLECPG::selChangeElanMTUCBO() {
    auto& field = board_.control<zNumberEdit>(l3MtuED);
    const int position = board_.control<zDropDown>(elanMtuCBO).selected();
    const bool known = position >= 0 && static_cast<std::size_t>(position) < elanMtuSizes.size();
    const unsigned size = known ? elanMtuSizes[static_cast<std::size_t>(position)] : 0;
    if (field.number() < size) field.setNumber(size);
}

void DConfigDlgLECPG::selChangeLecTB(int next) {
    storeDefaults(current_);
    setDefaults(next);
    current_ = next;
    ToggleControls();
}

std::vector<AtmBridgedPvc>& DConfigDlgLECPG::pvcs() const {
    return bufferOf(current_).pvcs;
}

AtmBridgedPvc* DConfigDlgLECPG::selectedPvc() const {
    const int row = table_->activeCell().row;
    return row >= 1 && static_cast<std::size_t>(row) <= pvcs().size()
               ? &pvcs()[static_cast<std::size_t>(row - 1)]
               : nullptr;
}

bool DConfigDlgLECPG::changePvc(const AtmBridgedPvc& pvc, PvcChange change) {
    std::function<int()> request;
    if (control_)
        request = [&] { return control_->changePvc(static_cast<std::uint8_t>(current_), change, pvc); };
    return dynamicOrStatic(dialog_, request, questionOf(change));
}

void DConfigDlgLECPG::clickedAddBTN() {
    DLecPvcDLG dialog(dialog_);
    dialog.runModal();
    if (!dialog.okFlag() || !changePvc(bridgedPvcXferBuffer, PvcChange::add)) return;
    pvcs().push_back(bridgedPvcXferBuffer);
    table_->Update(current_);
}

void DConfigDlgLECPG::clickedModifyBTN() {
    AtmBridgedPvc* pvc = selectedPvc();
    if (!pvc) return;
    bridgedPvcXferBuffer = *pvc;
    DLecPvcDLG dialog(dialog_);
    dialog.runModal();
    if (!dialog.okFlag() || !changePvc(bridgedPvcXferBuffer, PvcChange::modify)) return;
    *pvc = bridgedPvcXferBuffer;
    table_->Update(current_);
}

void DConfigDlgLECPG::clickedDeleteBTN() {
    const AtmBridgedPvc* pvc = selectedPvc();
    if (!pvc || !changePvc(*pvc, PvcChange::remove)) return;
    pvcs().erase(pvcs().begin() + (pvc - pvcs().data()));
    table_->Update(current_);
}

LECPGPvcTBL::LECPGPvcTBL(zTable& table) : myTable(table) {
    static constexpr const char* labels[] = {"MAC Address", "VPI/VCI", "Encapsulation", "Broadcast"};
    static constexpr const char* samples[] = {"00:00:00:00:00:00", "VPI/VCI", "Encapsulation", "Broadcast"};
    setColumns(labels, samples);
    setRowNumbers("99");
}

void LECPGPvcTBL::Update(int lec) {
    const std::vector<AtmBridgedPvc>& pvcs = bufferOf(lec).pvcs;
    resize(4, static_cast<int>(pvcs.size()));
    int row = 0;
    for (const AtmBridgedPvc& pvc : pvcs) {
        ++row;
        SetCellText({1, row}, pvc.mac.GetFMacAddress());
        SetCellText({2, row}, fmt::format("0 / {}", pvc.vci));
        SetCellText({3, row}, pvc.encapsulation == 1 ? "LLC_SNAP" : "NULL");
        SetCellText({4, row}, pvc.broadcast == 1 ? "TRUE" : "FALSE");
    }
    setActiveCell({1, row});
}
