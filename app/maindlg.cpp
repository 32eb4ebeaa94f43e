#include "app/maindlg.h"

#include "app/changewindows.h"
#include "app/firstfile.h"
#include "app/setup.h"
#include "model/settings.h"
#include "platform/index.h"
#include "platform/user.h"
#include "toolkit/controls/button.h"
#include "toolkit/controls/edit.h"
#include "toolkit/controls/listbox.h"
#include "toolkit/window/messagebox.h"
#include "ui/copymenu.h"
#include "ui/global/globldlg.h"
#include "ui/manual.h"
#include "ui/watch/watchmenu.h"

#include <algorithm>
#include <fcntl.h>

namespace {

constexpr int lastAdapter = 3;

}  // namespace

DMainDlg::DMainDlg(zApplication& application, const zLayout& layout)
    : zFormDialog(application, layout), adapterQuery_(ioctlDesc, 0) {
    connect();
    currentAdapter = 0;
    configuration_.read();
    DriverChannel::onLost = [this] { configuration_.driverLost(); };
    application.onConnectionLost = [this] { saveUnsavedLists(configuration_); };
    SetDlgTitle();
    obeyCommandLine();
    onPainted = [this] { setupOnce(); };
    show();
}

DMainDlg::~DMainDlg() {
    DriverChannel::onLost = nullptr;
    application().onConnectionLost = nullptr;
    // After Close has asked, nobody waits for the lock again.
    saveUnsavedLists(configuration_, std::chrono::seconds(askedAboutLists_ ? 0 : 5));
    statistics_.clear();  // some may ask over the channel
    mark_.reset();
    plots_.reset();
    ioctlDesc.close();
}

void DMainDlg::connect() {
    auto& list = control<zListBox>(interfaceLB);
    list.onSelect = [this] { selChangeInterfaceLB(); };
    list.onActivate = [this] { doubleClickInterfaceLB(); };
    list.setMenu([this] { return listMenu(); });
    control<zBitmapButton>(closeBTN).onClick = [this] { clickedCloseBTN(); };
    control<zBitmapButton>(setupBTN).onClick = [this] { clickedSetupBTN(); };
    control<zBitmapButton>(statsBTN).onClick = [this] { clickedStatsBTN(); };
    control<zBitmapButton>(globalBTN).onClick = [this] { clickedGlobalBTN(); };
    onKey("F5", [this] { setup(); });
    plots_ = PlotWindows::of(application());
    mark_.emplace(*this, std::nullopt);
    offerManual(*this);
    onClose = [this] { clickedCloseBTN(); };
}

void DMainDlg::setup() {
    asked_ = true;
    setCursor(zWatchCursor);
    showAdapters(ioctlDesc.alive() || ioctlDesc.open(O_RDONLY) ? discoverAdapters(adapterQuery_, atmDevices)
                                                               : Discovery());
    setCursor(zArrowCursor);
}

void DMainDlg::setupOnce() {
    if (!asked_) setup();
}

void DMainDlg::showAdapters(Discovery found) {
    auto& version = control<zEdit>(driverVersionED);
    if (found.complete || !found.version.empty()) version.setText(found.version);
    if (!found.version.empty()) configuration_.driverRevision = found.version;
    version.grey(!found.complete);
    // The adapters are still configured when the driver is gone, and the user has chosen one of them.
    if (!found.complete && found.adapters.empty() && !adapters_.empty()) return;

    adapters_ = std::move(found.adapters);
    auto& list = control<zListBox>(interfaceLB);
    std::vector<std::string> lines;
    for (const FoundAdapter& adapter : adapters_) lines.push_back(adapter.line);
    list.setLines(std::move(lines));
    const auto same = std::ranges::find(adapters_, chosen_, &FoundAdapter::index);
    list.select(same == adapters_.end() ? 0 : static_cast<int>(same - adapters_.begin()));
    selChangeInterfaceLB();
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
    if (known) chosen_ = currentAdapter;
    SetDlgTitle();
}

zMenuRows DMainDlg::listMenu() {
    zMenuRows rows = copyMenu(control<zListBox>(interfaceLB));
    rows.push_back({.label = "Rescan", .action = [this] { setup(); }, .keys = "F5"});
    rows.push_back(watchedConditionsRow(application()));
    return rows;
}

void DMainDlg::doubleClickInterfaceLB() {
    clickedSetupBTN();
}

void DMainDlg::clickedSetupBTN() {
    if (!platform::superUser()) {
        warn("Insufficient Privileges.\nUnable to Setup ATM Adapter!", "Privilege Error");
        return;
    }
    setupOnce();
    if (!ioctlDesc.alive()) {  // it may have come meanwhile, with other adapters
        const bool chosen = !adapters_.empty();
        const int wanted = currentAdapter;
        setup();
        if (chosen && currentAdapter != wanted) {
            warn("The adapters have changed.\nPlease select one.", "Driver Error");
            return;
        }
    }
    std::vector<int> found;
    for (const FoundAdapter& adapter : adapters_) found.push_back(adapter.index);
    offerFirstFile(*this, configuration_, found);
    if (application().ending()) return;
    if (!ioctlDesc) warn("Atm Driver Not Loaded. \nNo dynamic configuration available!", "Driver Error");
    setUpAdapter(*this, configuration_);
}

void DMainDlg::clickedGlobalBTN() {
    setupOnce();
    DGlobalDlg(*this).runModal();
}

void DMainDlg::clickedStatsBTN() {
    setupOnce();
    auto created = std::make_unique<DStatsDlg>(*this);
    DStatsDlg* dialog = created.get();
    statistics_.push_back(
        std::make_unique<Statistics>(Statistics{std::move(created), ConditionMark(*dialog, currentAdapter)}));
    dialog->onClosed = [this, dialog] {
        const auto closed = std::ranges::find_if(
            statistics_, [dialog](const auto& open) { return open->dialog.get() == dialog; });
        statistics_.erase(closed);
    };
}

void DMainDlg::clickedCloseBTN() {
    saveUnsavedListsAsking(*this, configuration_);
    askedAboutLists_ = true;
    application().quit();
}

void DMainDlg::warn(const std::string& text, const char* title) {
    zMessageBox(application(), shell(), zMessageStyle::warning, text, title);
}
