#include "ui/config/lecpage.h"

#include "driver/channel.h"
#include "model/settings.h"
#include "model/tvtypes.h"
#include "platform/index.h"
#include "toolkit/controls/dropdown.h"
#include "toolkit/controls/edit.h"
#include "toolkit/controls/tabstrip.h"
#include "ui/config/confids.h"
#include "ui/config/lcpvcdlg.h"
#include "ui/config/leclayout.h"
#include "ui/config/vciowners.h"

#include <utility>

namespace {

constexpr zBindingRow<LECXferBuffer> fields[] = {
    {macAddressED, &LECXferBuffer::macText},
    {networkPrefixED, &LECXferBuffer::networkPrefix},
    {esiSelectorED, &LECXferBuffer::esiSelector},
    {elanNameED, &LECXferBuffer::elanName},
    {l3MtuED, &LECXferBuffer::l3Mtu},
    {elanTypeCBO, &LECXferBuffer::elanType},
    {elanMtuCBO, &LECXferBuffer::mtuPosition},
    {enableCB, &LECXferBuffer::enabled},
    {pvcOnlyCB, &LECXferBuffer::pvcOnly},
};

constexpr AdvisedField advised[] = {
    {elanNameED, "elanName"},
    {l3MtuED, "l3Mtu"},
    {networkPrefixED, "networkPrefix"},
    {esiSelectorED, "esiSelector"},
};

LECXferBuffer& bufferOf(int lec) {
    return xferBuffer[asIndex(lec)];
}

}  // namespace

DConfigDlgLECPG::DConfigDlgLECPG(zFormDialog& dialog)
    : dialog_(dialog), request_(SetupIoctlDesc, static_cast<std::uint8_t>(currentAdapter)) {
    tvlog << "creating LEC Page" << std::endl;
    Setup(0);
}

void DConfigDlgLECPG::connect() {
    address_.emplace(board());
    table_.emplace(control<zTable>(pvcTBL));
    editor_.emplace(dialog_, board(), *table_, bridgedPvcXferBuffer, pvcList());
    board().group(lecsRB).bind(&choice_);
    Setup(0);
    board().load();
    table_->Update(0);
    table_->setActiveCell({0, 0});
    ToggleControls();

    togglesControls(enableCB);
    togglesControls(pvcOnlyCB);
    control<zTabStrip>(lecTB).onSelect = [this](int lec) { turnTo(lec); };
    board().group(lecsRB).onClick = [this](int id) { clickedLECSRBGroup(id); };
    control<zDropDown>(elanMtuCBO).onSelect = [this] { selChangeElanMTUCBO(); };
}

PvcEditor<AtmBridgedPvc>::Page DConfigDlgLECPG::pvcList() {
    PvcEditor<AtmBridgedPvc>::Page page;
    page.list = [this]() -> auto& {
        return bufferOf(current()).pvcs;
    };
    page.edit = [this](const AtmBridgedPvc* replaced) {
        return confirmed<DLecPvcDLG>(dialog_, vciOwners(bufferOf(current()).pvcs, replaced));
    };
    page.update = [this] {
        table_->Update(current());
        changed();
    };
    page.request = [this](const AtmBridgedPvc& pvc, PvcChange change) {
        return request_.changePvc(static_cast<std::uint8_t>(current()), change, pvc);
    };
    return page;
}

void DConfigDlgLECPG::Setup(int i) {
    choice_ = clicked_ = bufferOf(i).useLecs ? lecsRB : lesRB;
    if (!attached()) return;
    board().bind(bufferOf(i), fields);
    address_->reloaded();
}

void DConfigDlgLECPG::storeDefaults(int i) {
    storeControls();
    LECXferBuffer& buffer = bufferOf(i);
    const bool lecs = choice_ == lecsRB;
    if (lecs != (buffer.useLecs != 0)) buffer.useLecs = lecs;
}

void DConfigDlgLECPG::ToggleControls() {
    board().enable(lecPageRules,
                   (checked(enableCB) ? clientEnabled : 0U) | (checked(pvcOnlyCB) ? 0U : serversUsed),
                   lecPageNeeds);
}

void DConfigDlgLECPG::putShown(AdapterRecords& records) const {
    if (!attached()) return;
    LECXferBuffer shown = shownOn<LECXferBuffer>(board(), bufferOf(current()), fields);
    shown.useLecs = clicked_ == lecsRB;
    records.lec[asIndex(current())] = shown;
}

std::span<const AdvisedField> DConfigDlgLECPG::advisedFields() const {
    return advised;
}

void DConfigDlgLECPG::clickedLECSRBGroup(int id) {
    const bool again = std::exchange(clicked_, id) == id;
    if (id == lecsRB)
        address_->showWellKnown();
    else if (!again)
        address_->showOwn();
}

void DConfigDlgLECPG::selChangeElanMTUCBO() {
    auto& field = control<zNumberEdit>(l3MtuED);
    const int mtuClass = control<zDropDown>(elanMtuCBO).selected() + 1;
    const auto size = static_cast<unsigned>(MtuSize(mtuClass));
    if (field.number() >= size) return;
    field.setNumber(size);
    changed();
}

namespace {

constexpr const char* labels[] = {"MAC Address", "VPI/VCI", "Encapsulation", "Broadcast"};
constexpr const char* samples[] = {"00:00:00:00:00:00", "0 / 65535", "Encapsulation", "Broadcast"};

}  // namespace

LECPGPvcTBL::LECPGPvcTBL(zTable& table) : PvcTable(table, labels, samples) {}

void LECPGPvcTBL::Update(int lec) {
    static constexpr Cell<AtmBridgedPvc> cells[] = {
        [](const AtmBridgedPvc& pvc) -> std::string { return pvc.mac.GetFMacAddress(); },
        [](const AtmBridgedPvc& pvc) { return vciText(pvc.vci); },
        [](const AtmBridgedPvc& pvc) { return encapsulationText(pvc.encapsulation); },
        [](const AtmBridgedPvc& pvc) -> std::string { return pvc.broadcast == 1 ? "TRUE" : "FALSE"; },
    };
    show<AtmBridgedPvc>(bufferOf(lec).pvcs, cells);
}
