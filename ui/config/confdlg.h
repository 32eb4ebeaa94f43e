// The configuration notebook: every service of the current adapter, a page each.
//
// It edits the transfer buffers, which the caller has filled; scalar settings reach them at OK. List edits (PVCs,
// ELAN clients) go to the running driver and into the buffers at once and survive Cancel.
//
// Every page follows one protocol; pages that show one of several instances take its index, from 0:
//   attach         binds the page's controls, which have just been made, to the transfer buffer
//   Setup          the instance's record becomes the one that the page works on
//   setDefaults    the same, and shows it on the controls
//   storeDefaults  what was changed on the controls into the buffer
//   ToggleControls greys what the state of the check boxes makes impossible
#pragma once

#include "driver/channel.h"
#include "toolkit/window/window.h"
#include "ui/config/page.h"

#include <memory>
#include <optional>
#include <vector>

class DConfigDlg : public zFormDialog {
  public:
    // Opens the dialog's driver channel, SetupIoctlDesc; without one the pages work on the buffers only. The
    // parent shows the watch meanwhile. Shown by runModal().
    explicit DConfigDlg(zWindow& parent);

    bool okFlag() const { return okFlag_; }  // closed with OK

    int onOk();
    int onCancel();

  private:
    std::optional<OpenedChannel> channel_;            // SetupIoctlDesc
    std::vector<std::unique_ptr<ConfigPage>> pages_;  // by tab
    bool okFlag_ = false;
};
