// The global settings: what is not tied to an adapter. They last until the program ends.
#pragma once

#include "driver/requestblocks.h"
#include "toolkit/window/window.h"
#include "ui/global/globlpages.h"

#include <memory>
#include <optional>

class DGlobalDlg : public zFormDialog {
  public:
    // Shown by runModal().
    explicit DGlobalDlg(zWindow& parent);

    // Stores every page; sends the trace switches when one of their boxes was clicked on and there is a
    // driver.
    int onOk();
    int onCancel();

  private:
    void switchTraces();

    std::unique_ptr<DGlobalDlgAppPG> applicationPage_;
    std::unique_ptr<DGlobalDlgConnectPG> connectionsPage_;
    std::unique_ptr<DGlobalDlgDebugPG> debuggingPage_;
    std::optional<TraceRequest> traces_;  // none without a driver
};
