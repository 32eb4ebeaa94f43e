#include "ui/config/lecspage.h"

#include "platform/debuglog.h"
#include "ui/config/confids.h"
#include "ui/config/elantype.h"
#include "ui/config/lecslayout.h"

const FieldRow<DConfigDlgLECSPG, LECSXferBuffer> DConfigDlgLECSPG::fields[] = {
    {{networkPrefixED, &DConfigDlgLECSPG::networkPrefix_}, &LECSXferBuffer::networkPrefix},
    {{esiSelectorED, &DConfigDlgLECSPG::esiSelector_}, &LECSXferBuffer::esiSelector},
    {{ethernetRB, &DConfigDlgLECSPG::choice_}},
    {{etherMtuCBO, &DConfigDlgLECSPG::etherMtu_}, &LECSXferBuffer::etherMtuPosition},
    {{tokenRingMtuCBO, &DConfigDlgLECSPG::tokenRingMtu_}, &LECSXferBuffer::tokenRingMtuPosition},
    {{enableCB, &DConfigDlgLECSPG::enabled_}, &LECSXferBuffer::enabled},
    {{wellKnownAddressCB, &DConfigDlgLECSPG::useWellKnown_}},
};

DConfigDlgLECSPG::DConfigDlgLECSPG(zNotebook& notebook)
    : board_(notebook.addPage(lecsPageLayout)), address_(board_) {
    tvlog << "creating LECS page" << std::endl;
    Setup();
    bindFields<DConfigDlgLECSPG, LECSXferBuffer>(*this, board_, fields);
    board_.load();
    ToggleControls();
    board_.control<zCheckBox>(enableCB).onClick = [this] { ToggleControls(); };
    board_.control<zCheckBox>(wellKnownAddressCB).onClick = [this] { clickedWellKnownAddressCB(); };
}

void DConfigDlgLECSPG::Setup() {
    fieldsFromBuffer<DConfigDlgLECSPG, LECSXferBuffer>(*this, lecsXferBuffer, fields);
    choice_ = elanTypeButton(lecsXferBuffer.elanType);
}

void DConfigDlgLECSPG::setDefaults() {
    tvlog << "Setting Defaults" << std::endl;
    Setup();
    board_.load();
}

void DConfigDlgLECSPG::storeDefaults() {
    board_.store();
    fieldsToBuffer<DConfigDlgLECSPG, LECSXferBuffer>(*this, lecsXferBuffer, fields);
    lecsXferBuffer.elanType = elanTypeOf(choice_);
}

void DConfigDlgLECSPG::ToggleControls() {
    board_.enable(lecsPageRules, board_.control<zCheckBox>(enableCB).checked() ? lecsEnabled : 0U);
}

void DConfigDlgLECSPG::clickedWellKnownAddressCB() {
    if (board_.control<zCheckBox>(wellKnownAddressCB).checked())
        address_.showWellKnown();
    else
        address_.showOwn();
}
