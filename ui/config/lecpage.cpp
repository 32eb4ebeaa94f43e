#include "ui/config/lecpage.h"

#include "driver/channel.h"
#include "model/settings.h"
#include "toolkit/controls/dropdown.h"
#include "toolkit/controls/edit.h"
#include "toolkit/controls/tabstrip.h"
#include "ui/config/confids.h"
#include "ui/config/lcpvcdlg.h"
#include "ui/config/leclayout.h"

#include <array>

namespace {

constexpr std::array<unsigned, 3> elanMtuSizes{1516, 4544, 9234};  // by list position

LECXferBuffer& bufferOf(int lec) {
    return xferBuffer[static_cast<std::size_t>(lec)];
}

}  // namespace

const FieldRow<DConfigDlgLECPG, LECXferBuffer> DConfigDlgLECPG::fields[] = {
    {{macAddressED, &DConfigDlgLECPG::macText_}, &LECXferBuffer::macText},
    {{networkPrefixED, &DConfigDlgLECPG::networkPrefix_}, &LECXferBuffer::networkPrefix},
    {{esiSelectorED, &DConfigDlgLECPG::esiSelector_}, &LECXferBuffer::esiSelector},
    {{elanNameED, &DConfigDlgLECPG::elanName_}, &LECXferBuffer::elanName},
    {{l3MtuED, &DConfigDlgLECPG::l3Mtu_}, &LECXferBuffer::l3Mtu},
    {{lecsRB, &DConfigDlgLECPG::choice_}},
    {{elanTypeCBO, &DConfigDlgLECPG::elanType_}, &LECXferBuffer::elanType},
    {{elanMtuCBO, &DConfigDlgLECPG::elanMtu_}, &LECXferBuffer::mtuPosition},
    {{enableCB, &DConfigDlgLECPG::enabled_}, &LECXferBuffer::enabled},
    {{pvcOnlyCB, &DConfigDlgLECPG::pvcOnly_}, &LECXferBuffer::pvcOnly},
};

DConfigDlgLECPG::DConfigDlgLECPG(zFormDialog& dialog, zBoard& board)
    : ConfigPage(board), address_(board_), table_(board_.control<zTable>(pvcTBL)),
      editor_(dialog, board_, table_, bridgedPvcXferBuffer, pvcList(dialog)) {
    tvlog << "creating LEC Page" << std::endl;
    Setup(0);
    bind();
    table_.Update(0);
    table_.setActiveCell({0, 0});
    ToggleControls();

    onClick<zCheckBox>(enableCB, &DConfigDlgLECPG::ToggleControls);
    onClick<zCheckBox>(pvcOnlyCB, &DConfigDlgLECPG::ToggleControls);
    board_.control<zTabStrip>(lecTB).onSelect = [this](int lec) { selChangeLecTB(lec); };
    board_.group(lecsRB).onClick = [this](int id) { clickedLECSRBGroup(id); };
    board_.control<zDropDown>(elanMtuCBO).onSelect = [this] { selChangeElanMTUCBO(); };
}

PvcEditor<AtmBridgedPvc>::Page DConfigDlgLECPG::pvcList(zFormDialog& dialog) {
    PvcEditor<AtmBridgedPvc>::Page page;
    page.list = [this]() -> auto& {
        return bufferOf(current()).pvcs;
    };
    page.edit = [&dialog] { return confirmed<DLecPvcDLG>(dialog); };
    page.update = [this] { table_.Update(current()); };
    if (!SetupIoctlDesc) return page;
    request_.emplace(SetupIoctlDesc, static_cast<std::uint8_t>(currentAdapter));
    page.request = [this](const AtmBridgedPvc& pvc, PvcChange change) {
        return request_->changePvc(static_cast<std::uint8_t>(current()), change, pvc);
    };
    return page;
}

void DConfigDlgLECPG::Setup(int i) {
    take(bufferOf(i));
    choice_ = bufferOf(i).useLecs ? lecsRB : lesRB;
}

void DConfigDlgLECPG::setDefaults(int i) {
    showDefaults(i);
    table_.Update(i);
}

void DConfigDlgLECPG::storeDefaults(int i) {
    LECXferBuffer& buffer = bufferOf(i);
    give(buffer);
    const bool lecs = choice_ == lecsRB;
    if (lecs != (buffer.useLecs != 0)) buffer.useLecs = lecs;
}

void DConfigDlgLECPG::ToggleControls() {
    board_.enable(lecPageRules,
                  (checked(enableCB) ? clientEnabled : 0U) | (checked(pvcOnlyCB) ? 0U : serversUsed));
}

void DConfigDlgLECPG::clickedLECSRBGroup(int id) {
    if (id == lecsRB)
        address_.showWellKnown();
    else
        address_.showOwn();
}

void DConfigDlgLECPG::selChangeElanMTUCBO() {
    auto& field = board_.control<zNumberEdit>(l3MtuED);
    const int position = board_.control<zDropDown>(elanMtuCBO).selected();
    const bool known = position >= 0 && static_cast<std::size_t>(position) < elanMtuSizes.size();
    const unsigned size = known ? elanMtuSizes[static_cast<std::size_t>(position)] : 0;
    if (field.number() < size) field.setNumber(size);
}

void DConfigDlgLECPG::selChangeLecTB(int next) {
    turnTo(next);
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
