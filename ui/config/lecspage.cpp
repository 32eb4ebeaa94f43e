#include "ui/config/lecspage.h"

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

DConfigDlgLECSPG::DConfigDlgLECSPG(zBoard& board) : ConfigPage(board), address_(board_) {
    tvlog << "creating LECS page" << std::endl;
    Setup();
    bind();
    ToggleControls();
    onClick<zCheckBox>(enableCB, &DConfigDlgLECSPG::ToggleControls);
    onClick<zCheckBox>(wellKnownAddressCB, &DConfigDlgLECSPG::clickedWellKnownAddressCB);
}

void DConfigDlgLECSPG::Setup() {
    take(lecsXferBuffer);
    choice_ = elanTypeButton(lecsXferBuffer.elanType);
}

void DConfigDlgLECSPG::setDefaults() {
    showDefaults();
}

void DConfigDlgLECSPG::storeDefaults() {
    give(lecsXferBuffer);
    lecsXferBuffer.elanType = elanTypeOf(choice_);
}

void DConfigDlgLECSPG::ToggleControls() {
    board_.enable(lecsPageRules, checked(enableCB) ? lecsEnabled : 0U);
}

void DConfigDlgLECSPG::clickedWellKnownAddressCB() {
    if (checked(wellKnownAddressCB))
        address_.showWellKnown();
    else
        address_.showOwn();
}
