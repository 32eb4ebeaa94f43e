#include "app/maindlg.h"

#include "app/setup.h"
#include "model/settings.h"
#include "platform/index.h"
#include "platform/user.h"
#include "toolkit/controls/button.h"
#include "toolkit/controls/edit.h"
#include "toolkit/controls/listbox.h"
#include "toolkit/window/messagebox.h"
#include "ui/global/globldlg.h"

#include <algorithm>
#include <fcntl.h>

namespace {

constexpr int lastAdapter = 3;

}  // namespace

DMainDlg::DMainDlg(zApplication& application, const zLayout& layout)
    : zFormDialog(application, layout), channel_(ioctlDesc, O_RDONLY) {
    if (ioctlDesc) adapterQuery_.emplace(ioctlDesc, std::uint8_t{0});
    connect();
    setup();
    SetDlgTitle();
    show();
}

DMainDlg::~DMainDlg() {
    saveUnsavedLists(configuration_);
}

void DMainDlg::connect() {
    auto& list = control<zListBox>(interfaceLB);
    list.onSelect = [this] { selChangeInterfaceLB(); };
    list.onActivate = [this] { doubleClickInterfaceLB(); };
    control<zBitmapButton>(closeBTN).onClick = [this] { clickedCloseBTN(); };
    control<zBitmapButton>(setupBTN).onClick = [this] { clickedSetupBTN(); };
    control<zBitmapButton>(statsBTN).onClick = [this] { clickedStatsBTN(); };
    control<zBitmapButton>(globalBTN).onClick = [this] { clickedGlobalBTN(); };
    onClose = [this] { clickedCloseBTN(); };
}

void DMainDlg::setup() {
    currentAdapter = 0;
    configuration_.read();
    if (adapterQuery_) {
        if (const PackageRevView revision = adapterQuery_->GetPackageRev())
            control<zEdit>(driverVersionED).setText(configuration_.driverRevision = revision.text());
        adapters_ = discoverAdapters(*adapterQuery_);
    }
    auto& list = control<zListBox>(interfaceLB);
    std::vector<std::string> lines;
    for (const FoundAdapter& adapter : adapters_) lines.push_back(adapter.line);
    list.setLines(std::move(lines));
    list.select(0);
    if (!adapters_.empty()) currentAdapter = adapters_.front().index;
}

void DMainDlg::SetDlgTitle() {
    const auto& list = control<zListBox>(interfaceLB);
    dlgTitle = list.line(list.selected());
}

void DMainDlg::selChangeInterfaceLB() {
    const int position = std::max(0, control<zListBox>(interfaceLB).selected());
    const bool known = asIndex(position) < adapters_.size();
    // With a gap in the mask of adapters, list position and adapter index differ.
    currentAdapter = known ? adapters_[asIndex(position)].index : std::min(position, lastAdapter);
    SetDlgTitle();
}

void DMainDlg::doubleClickInterfaceLB() {
    clickedSetupBTN();
}

void DMainDlg::clickedSetupBTN() {
    if (!platform::superUser()) {
        warn("Insufficient Privileges.\nUnable to Setup ATM Adapter!", "Privilege Error");
        return;
    }
    if (!ioctlDesc) warn("Atm Driver Not Loaded. \nNo dynamic configuration available!", "Driver Error");
    setUpAdapter(*this, configuration_);
}

void DMainDlg::clickedGlobalBTN() {
    DGlobalDlg(*this).runModal();
}

void DMainDlg::clickedStatsBTN() {
    DStatsDlg* dialog = statistics_.emplace_back(std::make_unique<DStatsDlg>(*this)).get();
    dialog->onClosed = [this, dialog] {
        std::erase_if(statistics_, [dialog](const auto& open) { return open.get() == dialog; });
    };
}

void DMainDlg::clickedCloseBTN() {
    application().quit();
}

void DMainDlg::warn(const std::string& text, const char* title) {
    zMessageBox(application(), shell(), zMessageStyle::warning, text, title);
}
