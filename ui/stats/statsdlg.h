// The statistics notebook: a page for every service of one adapter. The page on top is refreshed from the
// driver.
//
// The dialog stays with the adapter that was the current one when it was opened, over a channel of its own.
// Several can be open side by side.
#pragma once

#include "ui/stats/statspage.h"

#include "toolkit/window/window.h"

#include <functional>
#include <memory>
#include <vector>

class DStatsDlg : public zFormDialog {
  public:
    // Builds the dialog, fills every page once and shows it; the parent shows the watch cursor meanwhile.
    // Without a driver the pages keep the texts of their layouts.
    explicit DStatsDlg(zWindow& parent);

    int onOk();      // "Clear": counters of the page on top start from 0; 1
    int onCancel();  // "Close"; 0

    // Called when the user closes the dialog; the owner destroys it.
    std::function<void()> onClosed;

  private:
    void selChangeTB(int position);

    DriverChannel channel_;  // closed if the driver accepts no further channel; ioctlDesc is used then
    std::vector<std::unique_ptr<StatsPage>> pages_;  // by tab
    StatsPage* current_ = nullptr;                   // the page whose timer runs
};
