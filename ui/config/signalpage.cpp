#include "ui/config/signalpage.h"

#include "platform/debuglog.h"
#include "ui/config/confids.h"
#include "ui/config/siglayout.h"

const FieldRow<DConfigDlgSignalPG, SigXferBuffer> DConfigDlgSignalPG::fields[] = {
    {{uniRevisionCBO, &DConfigDlgSignalPG::uniRevision_}, &SigXferBuffer::uniPosition},
    {{addrRegCB, &DConfigDlgSignalPG::addressRegistration_}, &SigXferBuffer::addressRegistration},
    {{portChangeCB, &DConfigDlgSignalPG::portChangeDetect_}, &SigXferBuffer::portChangeDetect},
    {{otherPrefixesCB, &DConfigDlgSignalPG::otherPrefixes_}, &SigXferBuffer::registerOtherPrefixes},
    {{registeredPrefixED, &DConfigDlgSignalPG::networkPrefix_}, &SigXferBuffer::networkPrefix},
};

DConfigDlgSignalPG::DConfigDlgSignalPG(zNotebook& notebook) : board_(notebook.addPage(signalPageLayout)) {
    tvlog << "creating Signalling page" << std::endl;
    Setup();
    bindFields<DConfigDlgSignalPG, SigXferBuffer>(*this, board_, fields);
    board_.load();
    ToggleControls();
    board_.control<zCheckBox>(addrRegCB).onClick = [this] { ToggleControls(); };
}

void DConfigDlgSignalPG::Setup() {
    fieldsFromBuffer<DConfigDlgSignalPG, SigXferBuffer>(*this, sigXferBuffer, fields);
}

void DConfigDlgSignalPG::setDefaults() {
    tvlog << "Setting Defaults" << std::endl;
    Setup();
    board_.load();
}

void DConfigDlgSignalPG::storeDefaults() {
    board_.store();
    fieldsToBuffer<DConfigDlgSignalPG, SigXferBuffer>(*this, sigXferBuffer, fields);
}

void DConfigDlgSignalPG::ToggleControls() {
    board_.enable(signalPageRules,
                  board_.control<zCheckBox>(addrRegCB).checked() ? registered : unregistered);
}
