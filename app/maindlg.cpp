#include "app/maindlg.h"

#include "app/apply.h"
#include "model/settings.h"
#include "model/tvdatbuf.h"
#include "platform/user.h"
#include "toolkit/controls/button.h"
#include "toolkit/controls/edit.h"
#include "toolkit/controls/listbox.h"
#include "toolkit/window/messagebox.h"
#include "ui/config/confdlg.h"
#include "ui/global/globldlg.h"

#include <algorithm>
#include <fcntl.h>
#include <fmt/format.h>

namespace {

constexpr int lastAdapter = 3;

// What the user has to know when files and driver have come apart.
std::string notSaved(const std::vector<SaveFailure>& failures) {
    std::string text = "Unable to save the configuration:\n\n";
    for (const SaveFailure& failure : failures) text += failure.file + ": " + failure.reason + "\n";
    return text + (ioctlDesc ? "\nThe running driver has what it took of the change, the file has not."
                             : "\nThe change is not in the file.");
}

// The servers of the current adapter whose clients have no file to go to; empty when there are none.
std::string withoutClientTable() {
    std::string servers;
    int number = 0;
    for (const AtmLES& les : atmDevices.les[static_cast<std::size_t>(currentAdapter)]) {
        ++number;
        if (!les.clients.empty() && les.clientFile.empty()) servers += fmt::format("LES {}\n", number);
    }
    return servers;
}

}  // namespace

DMainDlg::DMainDlg(zApplication& application, const zLayout& layout)
    : zFormDialog(application, layout), channel_(ioctlDesc, O_RDONLY) {
    editor_ = std::make_unique<DriverPdfEdit>(
        [this](const std::string& text, const std::string& caption) {
            zMessageBox(this->application(), shell(), zMessageStyle::information, text, caption);
        },
        false);
    if (ioctlDesc) adapterQuery_ = std::make_unique<aalInfo>(ioctlDesc, std::uint8_t{0});

    control<zListBox>(interfaceLB).onSelect = [this] { selChangeInterfaceLB(); };
    control<zListBox>(interfaceLB).onActivate = [this] { doubleClickInterfaceLB(); };
    control<zBitmapButton>(closeBTN).onClick = [this] { clickedCloseBTN(); };
    control<zBitmapButton>(setupBTN).onClick = [this] { clickedSetupBTN(); };
    control<zBitmapButton>(statsBTN).onClick = [this] { clickedStatsBTN(); };
    control<zBitmapButton>(globalBTN).onClick = [this] { clickedGlobalBTN(); };
    onClose = [this] { clickedCloseBTN(); };

    currentAdapter = 0;
    setup();
    SetDlgTitle();
    show();
}

void DMainDlg::setup() {
    if (editor_) editor_->ReadPdf();
    if (adapterQuery_) {
        if (const PackageRevView revision = adapterQuery_->GetPackageRev())
            control<zEdit>(driverVersionED).setText(revision.text());
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
    const auto known = static_cast<std::size_t>(position) < adapters_.size();
    // Where the mask of adapters has gaps, the position in the list is not the adapter's number.
    currentAdapter =
        known ? adapters_[static_cast<std::size_t>(position)].index : std::min(position, lastAdapter);
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
    configure();
}

void DMainDlg::configure() {
    bool saved = true;
    {
        MapDataToXferBuffer();
        DConfigDlg dialog(*this);
        dialog.runModal();
        setCursor(zWatchCursor);
        if (dialog.okFlag()) {
            MapXferBufferToData([this](const char* text, const char* title) { warn(text, title); });
            if (editor_) saved = editor_->WriteLink(currentAdapter);
        } else {
            MapXferBufferPVCsToData();
            MapXferBufferELANsToData();
            if (editor_) saved = editor_->WriteLists(currentAdapter);
        }
        setCursor(zArrowCursor);
    }
    if (!saved) warn(notSaved(editor_->failures()), "Configuration Error");
    if (const std::string servers = withoutClientTable(); !servers.empty())
        warn("Unable to save the ELAN clients of:\n\n" + servers +
                 "\nThe parameter file names no client table (ElanTbl) for them.",
             "ELAN Client Error");
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
