#include "app/setup.h"

#include "app/apply.h"
#include "app/changewindows.h"
#include "change/sentrequest.h"
#include "driver/channel.h"
#include "model/settings.h"
#include "ui/config/confdlg.h"

#include <optional>

namespace {

void takeListsOver() {
    MapXferBufferPVCsToData();
    MapXferBufferELANsToData();
}

}  // namespace

void setUpAdapter(zWindow& window, Configuration& configuration) {
    const int adapter = currentAdapter;
    configuration.readAgain(adapter);
    MapDataToXferBuffer();
    ChangeOrder order{.adapters = {adapter}, .before = atmDevices};
    std::optional<DConfigDlg> dialog(std::in_place, window);
    SetupIoctlDesc.onChange = [&order](const SentChange& sent) {
        order.requests.push_back(sentRequest(sent));
    };
    ChangeWindows change(window, configuration, adapter, [&] {
        SetupIoctlDesc.onChange = nullptr;
        order.settings = dialog->okFlag();
        if (order.settings)
            order.changed[asIndex(adapter)] = MapXferBufferToData();
        else
            takeListsOver();
        order.driver = ioctlDesc || SetupIoctlDesc;  // also a driver that came while the dialog was open
        order.display = window.application().displayName();
        return std::move(order);
    });
    dialog->runModalAndStay();
    change.carryOut(*dialog, [&](const std::string& doing) { dialog->line().setProgress(doing); });
    dialog.reset();
    change.showBoxes();
}
