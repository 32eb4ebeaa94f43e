// The global settings, which belong to no adapter. They last until the program ends.
#pragma once

#include "driver/requestblocks.h"
#include "toolkit/window/window.h"
#include "ui/global/globlpages.h"

#include <memory>

class DGlobalDlg : public zFormDialog {
  public:
    // Shown by runModal().
    explicit DGlobalDlg(zWindow& parent);

    // Stores all pages. Sends the trace switches if one of their boxes was clicked and the driver is there.
    int onOk();
    int onCancel();

  private:
    void switchTraces();

    std::unique_ptr<DGlobalDlgAppPG> applicationPage_;
    std::unique_ptr<DGlobalDlgConnectPG> connectionsPage_;
    std::unique_ptr<DGlobalDlgDebugPG> debuggingPage_;
    TraceRequest traces_;
};
