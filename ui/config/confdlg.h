// The configuration notebook: one page for each service of the current adapter.
//
// It edits the transfer buffers, which the caller has filled. Settings reach the buffers at OK. List edits
// (PVCs, ELAN clients) go to the running driver and into the buffers at once and survive Cancel.
//
// Operations of every page:
//   attach          binds the page's controls, which have just been created, to the transfer buffer
//   storeDefaults   stores what was changed on the controls in the buffer
//   ToggleControls  greys the controls that the check boxes make unusable
// Of pages that show one of several instances, by its index from 0, also:
//   Setup           makes the instance's record the one that the page works on
//   setDefaults     does the same and shows the record on the controls
#pragma once

#include "driver/channel.h"
#include "toolkit/window/window.h"
#include "ui/config/page.h"

#include <memory>
#include <optional>
#include <vector>

extern const zLayout setupLayout;

class DConfigDlg : public zFormDialog {
  public:
    // Opens the dialog's driver channel, SetupIoctlDesc; without a driver the pages change the buffers alone.
    // The parent shows the watch cursor meanwhile. runModal() shows the dialog.
    explicit DConfigDlg(zWindow& parent);

    bool okFlag() const { return okFlag_; }  // closed with OK

    zMessageLine& line() { return line_; }

    int onOk();
    int onCancel();

  private:
    zMessageLine::Advice advise(const zEdit* field);

    zMessageLine line_;
    std::optional<OpenedChannel> channel_;            // SetupIoctlDesc
    std::vector<std::unique_ptr<ConfigPage>> pages_;  // by tab
    AdapterRecords stored_;  // as they were when the dialog was opened; without lists, which may be long
    bool okFlag_ = false;
};
