// The statistics notebook: every service of one adapter, a page each, of which the one on top follows the driver.
//
// The dialog stays with the adapter that was the current one when it was opened, over a channel of its own. Several
// can be open side by side.
#pragma once

#include "ui/stats/statspage.h"

#include "toolkit/window/window.h"

#include <functional>
#include <memory>
#include <vector>

class DStatsDlg : public zFormDialog {
  public:
    // Builds the dialog, fills every page once and shows it. The parent shows the watch meanwhile. Without a driver
    // the pages keep the texts of their layouts.
    explicit DStatsDlg(zWindow& parent);

    int onOk();      // "Clear": counters of the page on top start from 0; 1
    int onCancel();  // "Close"; 0

    // The user has closed the dialog: its owner destroys it.
    std::function<void()> onClosed;

  private:
    void selChangeTB(int position);

    DriverChannel channel_;                          // closed when the driver gives no further one
    std::vector<std::unique_ptr<StatsPage>> pages_;  // by tab
    StatsPage* current_ = nullptr;                   // whose timer runs
};
