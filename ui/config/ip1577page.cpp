#include "ui/config/ip1577page.h"

#include "driver/channel.h"
#include "model/settings.h"
#include "toolkit/controls/edit.h"
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

DConfigDlgI1577PG::DConfigDlgI1577PG(zFormDialog& dialog, zBoard& board)
    : ConfigPage(board), table_(board_.control<zTable>(pvcTBL)),
      editor_(dialog, board_, table_, pvcXferBuffer, pvcList(dialog)) {
    tvlog << "creating 1577 page" << std::endl;
    Setup();
    bind();
    ToggleControls();
    table_.Update();

    onClick<zCheckBox>(enableCB, &DConfigDlgI1577PG::ToggleControls);
    onClick<zCheckBox>(pvcOnlyCB, &DConfigDlgI1577PG::ToggleControls);
    onClick<zCheckBox>(serverCB, &DConfigDlgI1577PG::clickedEnableServerCB);
}

PvcEditor<AtmRoutedPvc>::Page DConfigDlgI1577PG::pvcList(zFormDialog& dialog) {
    PvcEditor<AtmRoutedPvc>::Page page;
    page.list = []() -> auto& {
        return ip1577XferBuffer.pvcs;
    };
    page.edit = [&dialog] { return confirmed<DIpPvcDLG>(dialog); };
    page.update = [this] { table_.Update(); };
    if (!SetupIoctlDesc) return page;
    request_.emplace(SetupIoctlDesc, static_cast<std::uint8_t>(currentAdapter));
    page.request = [this](const AtmRoutedPvc& pvc, PvcChange change) {
        return request_->changePvc(change, pvc);
    };
    return page;
}

void DConfigDlgI1577PG::Setup() {
    take(ip1577XferBuffer);
    server_ = ip1577XferBuffer.arpServerHere;
}

void DConfigDlgI1577PG::setDefaults() {
    showDefaults();
    table_.Update();
}

void DConfigDlgI1577PG::storeDefaults() {
    give(ip1577XferBuffer);
}

void DConfigDlgI1577PG::ToggleControls() {
    board_.enable(ip1577PageRules, (checked(enableCB) ? ipEnabled : 0U) |
                                       (checked(pvcOnlyCB) ? 0U : serverUsed) |
                                       (checked(serverCB) ? 0U : serverForeign));
}

// The adapter is the ARP server exactly when the server's address is its own.
void DConfigDlgI1577PG::clickedEnableServerCB() {
    auto& serverIp = board_.control<zEdit>(serverIpED);
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
