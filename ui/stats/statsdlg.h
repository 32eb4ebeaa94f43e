// The statistics notebook: a page for every service of one adapter. The page on top is refreshed from the
// driver.
//
// The dialog stays with the adapter that was the current one when it was opened, over a channel of its own.
// Several can be open side by side. While the driver does not answer, a line at the lower edge says since
// when, and all values are greyed.
#pragma once

#include "ui/stats/statspage.h"

#include "toolkit/controls/messageline.h"
#include "toolkit/window/window.h"

#include <ctime>
#include <functional>
#include <memory>
#include <vector>

class DStatsDlg : public zFormDialog {
  public:
    // Builds the dialog, fills its pages for at most a second, the first one first, and shows it; the parent
    // shows the watch cursor meanwhile. What is left is filled when its page is turned to. Until a driver is
    // there the pages keep the texts of their layouts.
    explicit DStatsDlg(zWindow& parent);

    int onOk();      // "Clear": counters of the page on top start from 0; 1
    int onCancel();  // "Close"; 0

    // Called when the user closes the dialog; the owner destroys it.
    std::function<void()> onClosed;

  private:
    DriverChannel& openChannel(zWindow& parent);
    void fillPages();
    void selChangeTB(int position);
    void showSilence();

    DriverChannel own_;       // closed if the driver accepts no further channel
    DriverChannel& channel_;  // it, or then ioctlDesc
    double linkLimit_ = metrics::linkLimit(SuniStatsView());  // of the adapter, as far as it is known
    zMessageLine line_;
    std::time_t silentSince_ = 0;                    // as the line says; 0: it is empty
    std::vector<std::unique_ptr<StatsPage>> pages_;  // by tab
    StatsPage* current_ = nullptr;                   // the page whose timer runs
};
