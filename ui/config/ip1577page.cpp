#include "ui/config/ip1577page.h"

#include "driver/channel.h"
#include "model/settings.h"
#include "toolkit/controls/edit.h"
#include "ui/config/addresspair.h"
#include "ui/config/confids.h"
#include "ui/config/iplayout.h"
#include "ui/config/ippvcdlg.h"
#include "ui/config/vciowners.h"

namespace {

// Whether this adapter is the ARP server is never stored: it follows from the addresses.
constexpr zBindingRow<IP1577XferBuffer> fields[] = {
    {enableCB, &IP1577XferBuffer::enabled},
    {pvcOnlyCB, &IP1577XferBuffer::pvcOnly},
    {networkPrefixED, &IP1577XferBuffer::networkPrefix},
    {esiSelectorED, &IP1577XferBuffer::esiSelector},
    {serverIpED, &IP1577XferBuffer::serverIp},
    {subnetMaskED, &IP1577XferBuffer::subnetMask},
    {ipED, &IP1577XferBuffer::ip},
};

constexpr AdvisedField advised[] = {
    {ipED, "address"},
    {subnetMaskED, "subnetMask"},
    {serverIpED, "serverAddress"},
    {networkPrefixED, "networkPrefix"},
    {esiSelectorED, "esiSelector"},
};

}  // namespace

DConfigDlgI1577PG::DConfigDlgI1577PG(zFormDialog& dialog)
    : dialog_(dialog), request_(SetupIoctlDesc, static_cast<std::uint8_t>(currentAdapter)) {
    tvlog << "creating 1577 page" << std::endl;
}

void DConfigDlgI1577PG::connect() {
    table_.emplace(control<zTable>(pvcTBL));
    editor_.emplace(dialog_, board(), *table_, pvcXferBuffer, pvcList());
    fillBothFromOne(board());
    board().bind(ip1577XferBuffer, fields);
    board().load();
    control<zCheckBox>(serverCB).check(ip1577XferBuffer.arpServerHere != 0);
    ToggleControls();
    table_->Update();
    table_->setActiveCell({0, 0});  // nobody has selected a PVC yet

    togglesControls(enableCB);
    togglesControls(pvcOnlyCB);
    control<zCheckBox>(serverCB).onClick = [this] { clickedEnableServerCB(); };
}

PvcEditor<AtmRoutedPvc>::Page DConfigDlgI1577PG::pvcList() {
    PvcEditor<AtmRoutedPvc>::Page page;
    page.list = []() -> auto& {
        return ip1577XferBuffer.pvcs;
    };
    page.edit = [this](const AtmRoutedPvc* replaced) {
        return confirmed<DIpPvcDLG>(dialog_, vciOwners(ip1577XferBuffer.pvcs, replaced));
    };
    page.update = [this] {
        table_->Update();
        changed();
    };
    page.request = [this](const AtmRoutedPvc& pvc, PvcChange change) {
        return request_.changePvc(change, pvc);
    };
    return page;
}

void DConfigDlgI1577PG::ToggleControls() {
    board().enable(ip1577PageRules,
                   (checked(enableCB) ? ipEnabled : 0U) | (checked(pvcOnlyCB) ? 0U : serverUsed) |
                       (checked(serverCB) ? 0U : serverForeign),
                   ip1577PageNeeds);
}

void DConfigDlgI1577PG::putShown(AdapterRecords& records) const {
    if (attached()) records.ip = shownOn<IP1577XferBuffer>(board(), ip1577XferBuffer, fields);
}

std::span<const AdvisedField> DConfigDlgI1577PG::advisedFields() const {
    return advised;
}

// The adapter is the ARP server exactly when the server's address is its own.
void DConfigDlgI1577PG::clickedEnableServerCB() {
    auto& serverIp = control<zEdit>(serverIpED);
    if (checked(serverCB)) {
        serverIp.store();
        serverIp.setText(ip1577XferBuffer.ip);
    } else {
        serverIp.load();
    }
    ToggleControls();
}

namespace {

constexpr const char* labels[] = {"IP Address", "VPI/VCI", "Encapsulation"};
constexpr const char* samples[] = {"000.000.000.000", "0 / 65535", "Encapsulation"};

}  // namespace

I1577PGPvcTBL::I1577PGPvcTBL(zTable& table) : PvcTable(table, labels, samples) {}

void I1577PGPvcTBL::Update() {
    static constexpr Cell<AtmRoutedPvc> cells[] = {
        [](const AtmRoutedPvc& pvc) -> std::string { return pvc.ip.GetFIPAddress(); },
        [](const AtmRoutedPvc& pvc) { return vciText(pvc.vci); },
        [](const AtmRoutedPvc& pvc) { return encapsulationText(pvc.encapsulation); },
    };
    show<AtmRoutedPvc>(ip1577XferBuffer.pvcs, cells);
}
