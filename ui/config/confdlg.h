// The configuration notebook: every service of the current adapter, a page each.
//
// It edits the transfer buffers, which the caller has filled; scalar settings reach them at OK. List edits (PVCs,
// ELAN clients) go to the running driver and into the buffers at once and survive Cancel.
#pragma once

#include "toolkit/notebook.h"
#include "toolkit/window.h"
#include "ui/config/lecpage.h"

#include <memory>

class DConfigDlg : public zFormDialog {
  public:
    // Opens the dialog's driver channel, SetupIoctlDesc; without one the pages work on the buffers only. The
    // parent shows the watch meanwhile. Shown by runModal().
    explicit DConfigDlg(zWindow& parent);
    ~DConfigDlg() override;  // closes the channel

    bool okFlag() const { return okFlag_; }  // closed with OK

    int onOk();
    int onCancel();

  private:
    std::unique_ptr<DConfigDlgLECPG> lecPage_;
    bool okFlag_ = false;
};
