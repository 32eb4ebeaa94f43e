#include "ui/config/signalpage.h"

#include "ui/config/confids.h"
#include "ui/config/siglayout.h"

const FieldRow<DConfigDlgSignalPG, SigXferBuffer> DConfigDlgSignalPG::fields[] = {
    {{uniRevisionCBO, &DConfigDlgSignalPG::uniRevision_}, &SigXferBuffer::uniPosition},
    {{addrRegCB, &DConfigDlgSignalPG::addressRegistration_}, &SigXferBuffer::addressRegistration},
    {{portChangeCB, &DConfigDlgSignalPG::portChangeDetect_}, &SigXferBuffer::portChangeDetect},
    {{otherPrefixesCB, &DConfigDlgSignalPG::otherPrefixes_}, &SigXferBuffer::registerOtherPrefixes},
    {{registeredPrefixED, &DConfigDlgSignalPG::networkPrefix_}, &SigXferBuffer::networkPrefix},
};

DConfigDlgSignalPG::DConfigDlgSignalPG(zBoard& board) : ConfigPage(board) {
    tvlog << "creating Signalling page" << std::endl;
    Setup();
    bind();
    ToggleControls();
    onClick<zCheckBox>(addrRegCB, &DConfigDlgSignalPG::ToggleControls);
}

void DConfigDlgSignalPG::Setup() {
    take(sigXferBuffer);
}

void DConfigDlgSignalPG::setDefaults() {
    showDefaults();
}

void DConfigDlgSignalPG::storeDefaults() {
    give(sigXferBuffer);
}

void DConfigDlgSignalPG::ToggleControls() {
    board_.enable(signalPageRules, checked(addrRegCB) ? registered : unregistered);
}
