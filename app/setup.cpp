#include "app/setup.h"

#include "app/apply.h"
#include "driver/channel.h"
#include "model/settings.h"
#include "model/tvdatbuf.h"
#include "platform/index.h"
#include "toolkit/window/messagebox.h"
#include "ui/config/confdlg.h"

#include <fmt/format.h>

namespace {

// The text for a failed save. The last sentence is there only if something was changed and no change is in
// the files.
std::string notSaved(const DriverPdfEdit& editor, bool changed, bool accepted) {
    std::string text = "Unable to save the configuration:\n\n";
    for (const SaveFailure& failure : editor.failures()) text += failure.file + ": " + failure.reason + "\n";
    if (!changed || editor.wroteAnything()) return text;
    return text + (accepted ? "\nThe driver keeps what it accepted; the file was not updated."
                            : "\nThe change is not in the file.");
}

// The servers of the current adapter that have clients but no client table, one a line.
std::string withoutClientTable() {
    std::string servers;
    int number = 0;
    for (const AtmLES& les : atmDevices.les[asIndex(currentAdapter)]) {
        ++number;
        if (!les.clients.empty() && les.clientFile.empty()) servers += fmt::format("LES {}\n", number);
    }
    return servers;
}

}  // namespace

void setUpAdapter(zWindow& window, DriverPdfEdit& editor) {
    const auto warn = [&window](const std::string& text, const char* title) {
        zMessageBox(window.application(), window.shell(), zMessageStyle::warning, text, title);
    };
    bool saved = true, changed = false, accepted = false;
    {
        MapDataToXferBuffer();
        const unsigned long before = SetupIoctlDesc.acceptedChanges();
        DConfigDlg dialog(window);
        dialog.runModal();
        window.setCursor(zWatchCursor);
        changed = listsChanged() || (dialog.okFlag() && settingsChanged());
        accepted = SetupIoctlDesc.acceptedChanges() != before;
        if (dialog.okFlag()) {
            accepted |= MapXferBufferToData(warn);
            saved = editor.WriteLink(currentAdapter);
        } else {
            MapXferBufferPVCsToData();
            MapXferBufferELANsToData();
            saved = editor.WriteLists(currentAdapter);
        }
        window.setCursor(zArrowCursor);
    }
    // An adapter without a section has nowhere to save its settings. That matters only if they were changed.
    const bool asBefore = !changed && editor.onlySectionsMissing();
    if (!saved && !asBefore) warn(notSaved(editor, changed, accepted), "Configuration Error");
    if (const std::string servers = withoutClientTable(); !servers.empty())
        warn("Unable to save the ELAN clients of:\n\n" + servers +
                 "\nThe parameter file names no client table (ElanTbl) for them.",
             "ELAN Client Error");
}
