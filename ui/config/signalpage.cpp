#include "ui/config/signalpage.h"

#include "model/tvdatbuf.h"
#include "ui/config/confids.h"
#include "ui/config/siglayout.h"

namespace {

constexpr zBindingRow<SigXferBuffer> fields[] = {
    {uniRevisionCBO, &SigXferBuffer::uniPosition},
    {addrRegCB, &SigXferBuffer::addressRegistration},
    {portChangeCB, &SigXferBuffer::portChangeDetect},
    {otherPrefixesCB, &SigXferBuffer::registerOtherPrefixes},
    {registeredPrefixED, &SigXferBuffer::networkPrefix},
};

constexpr AdvisedField advised[] = {
    {registeredPrefixED, "networkPrefix"},
};

}  // namespace

DConfigDlgSignalPG::DConfigDlgSignalPG(zFormDialog&) {
    tvlog << "creating Signalling page" << std::endl;
}

void DConfigDlgSignalPG::connect() {
    board().bind(sigXferBuffer, fields);
    board().load();
    ToggleControls();
    togglesControls(addrRegCB);
}

void DConfigDlgSignalPG::ToggleControls() {
    board().enable(signalPageRules, checked(addrRegCB) ? registered : unregistered, signalPageNeeds);
}

void DConfigDlgSignalPG::putShown(AdapterRecords& records) const {
    if (attached()) records.sig = shownOn<SigXferBuffer>(board(), sigXferBuffer, fields);
}

std::span<const AdvisedField> DConfigDlgSignalPG::advisedFields() const {
    return advised;
}
