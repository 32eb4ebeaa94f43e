#include "ui/config/lecspage.h"

#include "model/tvdatbuf.h"
#include "ui/config/confids.h"
#include "ui/config/elantype.h"
#include "ui/config/lecslayout.h"

namespace {

// "Use 'Well Known Address'" is never stored.
constexpr zBindingRow<LECSXferBuffer> fields[] = {
    {networkPrefixED, &LECSXferBuffer::networkPrefix},
    {esiSelectorED, &LECSXferBuffer::esiSelector},
    {etherMtuCBO, &LECSXferBuffer::etherMtuPosition},
    {tokenRingMtuCBO, &LECSXferBuffer::tokenRingMtuPosition},
    {enableCB, &LECSXferBuffer::enabled},
};

constexpr AdvisedField advised[] = {
    {networkPrefixED, "networkPrefix"},
    {esiSelectorED, "esiSelector"},
};

}  // namespace

DConfigDlgLECSPG::DConfigDlgLECSPG(zFormDialog&) : choice_(elanTypeButton(lecsXferBuffer.elanType)) {
    tvlog << "creating LECS page" << std::endl;
}

void DConfigDlgLECSPG::connect() {
    address_.emplace(board());
    board().bind(lecsXferBuffer, fields);
    board().group(ethernetRB).bind(&choice_);
    board().load();
    ToggleControls();
    togglesControls(enableCB);
    control<zCheckBox>(wellKnownAddressCB).onClick = [this] { clickedWellKnownAddressCB(); };
}

void DConfigDlgLECSPG::storeDefaults() {
    storeControls();
    storeElanType(lecsXferBuffer.elanType, choice_, "Lecs");
}

void DConfigDlgLECSPG::ToggleControls() {
    board().enable(lecsPageRules, checked(enableCB) ? lecsEnabled : 0U, lecsPageNeeds);
}

void DConfigDlgLECSPG::putShown(AdapterRecords& records) const {
    if (attached()) records.lecs = shownOn<LECSXferBuffer>(board(), lecsXferBuffer, fields);
}

std::span<const AdvisedField> DConfigDlgLECSPG::advisedFields() const {
    return advised;
}

void DConfigDlgLECSPG::clickedWellKnownAddressCB() {
    if (checked(wellKnownAddressCB))
        address_->showWellKnown();
    else
        address_->showOwn();
}
