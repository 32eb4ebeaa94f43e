#include "ui/config/ip1577page.h"

#include "driver/dai_api.h"
#include "model/settings.h"
#include "platform/debuglog.h"
#include "toolkit/edit.h"
#include "ui/config/iplayout.h"
#include "ui/config/ippvcdlg.h"

const FieldRow<DConfigDlgI1577PG, IP1577XferBuffer> DConfigDlgI1577PG::fields[] = {
    {{enableCB, &DConfigDlgI1577PG::enabled_}, &IP1577XferBuffer::enabled},
    {{pvcOnlyCB, &DConfigDlgI1577PG::pvcOnly_}, &IP1577XferBuffer::pvcOnly},
    {{serverCB, &DConfigDlgI1577PG::server_}},
    {{networkPrefixED, &DConfigDlgI1577PG::networkPrefix_}, &IP1577XferBuffer::networkPrefix},
    {{esiSelectorED, &DConfigDlgI1577PG::esiSelector_}, &IP1577XferBuffer::esiSelector},
    {{serverIpED, &DConfigDlgI1577PG::serverIp_}, &IP1577XferBuffer::serverIp},
    {{subnetMaskED, &DConfigDlgI1577PG::subnetMask_}, &IP1577XferBuffer::subnetMask},
    {{ipED, &DConfigDlgI1577PG::ip_}, &IP1577XferBuffer::ip},
};

DConfigDlgI1577PG::DConfigDlgI1577PG(zFormDialog& dialog, zNotebook& notebook)
    : board_(notebook.addPage(ip1577PageLayout)), table_(board_.control<zTable>(pvcTBL)),
      editor_(dialog, board_, table_, pvcXferBuffer, pvcList(dialog)) {
    tvlog << "creating 1577 page" << std::endl;
    Setup();
    bindFields<DConfigDlgI1577PG, IP1577XferBuffer>(*this, board_, fields);
    board_.load();
    ToggleControls();
    table_.Update();

    board_.control<zCheckBox>(enableCB).onClick = [this] { ToggleControls(); };
    board_.control<zCheckBox>(pvcOnlyCB).onClick = [this] { ToggleControls(); };
    board_.control<zCheckBox>(serverCB).onClick = [this] { clickedEnableServerCB(); };
}

PvcEditor<AtmRoutedPvc>::Page DConfigDlgI1577PG::pvcList(zFormDialog& dialog) {
    PvcEditor<AtmRoutedPvc>::Page page;
    page.list = []() -> auto& {
        return ip1577XferBuffer.pvcs;
    };
    page.edit = [&dialog] { return confirmed<DIpPvcDLG>(dialog); };
    page.update = [this] { table_.Update(); };
    if (!SetupIoctlDesc) return page;
    control_.emplace(SetupIoctlDesc, static_cast<std::uint8_t>(currentAdapter));
    page.request = [this](const AtmRoutedPvc& pvc, PvcChange change) {
        return control_->changePvc(change, pvc);
    };
    return page;
}

void DConfigDlgI1577PG::Setup() {
    fieldsFromBuffer<DConfigDlgI1577PG, IP1577XferBuffer>(*this, ip1577XferBuffer, fields);
    server_ = ip1577XferBuffer.arpServerHere;
}

void DConfigDlgI1577PG::setDefaults() {
    tvlog << "Setting Defaults" << std::endl;
    Setup();
    board_.load();
    table_.Update();
}

void DConfigDlgI1577PG::storeDefaults() {
    board_.store();
    fieldsToBuffer<DConfigDlgI1577PG, IP1577XferBuffer>(*this, ip1577XferBuffer, fields);
}

void DConfigDlgI1577PG::ToggleControls() {
    const auto on = [this](int id) { return board_.control<zCheckBox>(id).checked(); };
    board_.enable(ip1577PageRules, (on(enableCB) ? ipEnabled : 0U) | (on(pvcOnlyCB) ? 0U : serverUsed) |
                                       (on(serverCB) ? 0U : serverForeign));
}

// The adapter is the ARP server exactly when the server's address is its own.
void DConfigDlgI1577PG::clickedEnableServerCB() {
    auto& serverIp = board_.control<zEdit>(serverIpED);
    if (board_.control<zCheckBox>(serverCB).checked()) {
        serverIp.store();
        serverIp.setText(ip1577XferBuffer.ip);
    } else {
        serverIp.load();
    }
    ToggleControls();
}

namespace {

constexpr const char* labels[] = {"IP Address", "VPI/VCI", "Encapsulation"};
constexpr const char* samples[] = {"000.000.000.000", nullptr, "Encapsulation"};

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
