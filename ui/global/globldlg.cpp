#include "ui/global/globldlg.h"

#include "driver/channel.h"
#include "model/settings.h"
#include "platform/user.h"
#include "resources/pictureids.h"
#include "toolkit/controls/button.h"
#include "toolkit/window/messagebox.h"
#include "ui/global/globlids.h"
#include "ui/manual.h"
#include "ui/subdialog.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <utility>

namespace {

constexpr zControlRow rows[] = {
    {.id = globalPagesNB, .kind = zKind::notebook, .place = {4, 4, 208, 119}},
    okRow({54, 130, 50, 18}, globalOkBTN),
    cancelRow({112, 130, 50, 18}, globalCancelBTN),
};

constexpr zLayout frame{.id = 578,
                        .name = "global",
                        .caption = "Global Settings",
                        .width = 216,
                        .height = 155,
                        .font = {zFontRow::normal},
                        .icon = globalIcon,
                        .rows = rows};

}  // namespace

DGlobalDlg::DGlobalDlg(zWindow& parent) : zFormDialog(parent, frame), traces_(ioctlDesc) {
    auto& notebook = control<zNotebook>(globalPagesNB);
    applicationPage_ = std::make_unique<DGlobalDlgAppPG>(*this, notebook);
    connectionsPage_ = std::make_unique<DGlobalDlgConnectPG>(notebook);
    debuggingPage_ = std::make_unique<DGlobalDlgDebugPG>(notebook);
    control<zBitmapButton>(globalOkBTN).onClick = [this] { onOk(); };
    control<zBitmapButton>(globalCancelBTN).onClick = [this] { onCancel(); };
    onClose = [this] { onCancel(); };
    offerManual(*this);
}

int DGlobalDlg::onOk() {
    debuggingPage_->StoreDefaults();
    if (debuggingPage_->changed()) switchTraces();
    applicationPage_->StoreDefaults();
    endModal();
    return 1;
}

int DGlobalDlg::onCancel() {
    endModal();
    return 0;
}

// Sends all three switches: another program may have changed those that were not clicked.
void DGlobalDlg::switchTraces() {
    if (!ioctlDesc.alive() && !ioctlDesc.open(O_RDONLY)) {
        zMessageBox(application(), shell(), zMessageStyle::warning,
                    "There is no driver. No trace has been switched.", "Driver Error");
        return;
    }
    if (!platform::superUser()) {
        zMessageBox(application(), shell(), zMessageStyle::warning,
                    "Insufficient Privileges.\nUnable to Modify Signalling Parameters!", "Privilege Error");
        return;
    }
    const struct {
        TraceRequest::Component component;
        int on;
        const char* name;
    } traces[] = {{TraceRequest::accessInterface, ApiDbgCB, "API"},
                  {TraceRequest::signalling, SignalingDbgCB, "Signalling"},
                  {TraceRequest::ilmi, IlmiDbgCB, "ILMI"}};
    setCursor(zWatchCursor);
    std::string refused;
    bool silent = false;  // each wait can take many seconds
    for (const auto& trace : traces) {
        if (!silent && traces_.switchTrace(trace.component, trace.on != 0) == 0) continue;
        const bool sent = !std::exchange(silent, silent || !traces_.decided());
        refused +=
            !sent    ? fmt::format("\nTrace of {}: not switched.", trace.name)
            : silent ? fmt::format("\nTrace of {}: no answer. Whether it is switched is unknown.", trace.name)
                     : fmt::format("\nTrace of {}: refused ({}).", trace.name, traces_.header().Resp);
    }
    setCursor(zArrowCursor);
    if (!refused.empty())
        zMessageBox(application(), shell(), zMessageStyle::warning,
                    "The driver did not take everything:\n" + refused, "Driver Error");
}
