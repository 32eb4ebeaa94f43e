// The configuration notebook: every service of the current adapter, a page each.
//
// It edits the transfer buffers, which the caller has filled; scalar settings reach them at OK. List edits (PVCs,
// ELAN clients) go to the running driver and into the buffers at once and survive Cancel.
//
// Every page follows one protocol; pages that show one of several instances take its index, from 0:
//   Setup          the transfer buffer into the variables to which the page's controls are bound
//   setDefaults    the same, and onto the controls
//   storeDefaults  what was changed on the controls into the buffer
//   ToggleControls greys what the state of the check boxes makes impossible
#pragma once

#include "driver/channel.h"
#include "toolkit/controls/notebook.h"
#include "toolkit/window/window.h"
#include "ui/config/ip1577page.h"
#include "ui/config/lecpage.h"
#include "ui/config/lecspage.h"
#include "ui/config/lespage.h"
#include "ui/config/signalpage.h"

#include <memory>

class DConfigDlg : public zFormDialog {
  public:
    // Opens the dialog's driver channel, SetupIoctlDesc; without one the pages work on the buffers only. The
    // parent shows the watch meanwhile. Shown by runModal().
    explicit DConfigDlg(zWindow& parent);

    bool okFlag() const { return okFlag_; }  // closed with OK

    int onOk();
    int onCancel();

  private:
    OpenedChannel channel_;  // SetupIoctlDesc
    // Made when they are first on top; a page that was not seen has nothing to store.
    std::unique_ptr<DConfigDlgSignalPG> signalPage_;
    std::unique_ptr<DConfigDlgLECPG> lecPage_;
    std::unique_ptr<DConfigDlgLESPG> lesPage_;    // in advanced mode only
    std::unique_ptr<DConfigDlgLECSPG> lecsPage_;  // likewise
    std::unique_ptr<DConfigDlgI1577PG> ip1577Page_;
    bool okFlag_ = false;
};
