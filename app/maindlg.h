// The main window: lists the adapters and opens the configuration, statistics and global settings dialogs.
#pragma once

#include "change/configuration.h"
#include "driver/channel.h"
#include "driver/dai_io.h"
#include "driver/discovery.h"
#include "toolkit/controls/contextmenu.h"
#include "toolkit/window/window.h"
#include "ui/plot/plotwindows.h"
#include "ui/stats/statsdlg.h"
#include "ui/watch/conditionmark.h"

#include <memory>
#include <optional>
#include <vector>

extern const zLayout mainLayout;

// Control ids of the main window.
enum MainControl {
    interfaceLB = 581,
    driverVersionED = 582,
    closeBTN = 584,
    setupBTN = 585,
    statsBTN = 586,
    globalBTN = 587,
};

class DMainDlg : public zFormDialog {
  public:
    // Reads the configuration of all adapters and shows the window. The driver is asked for the adapters from
    // the event loop, when the window has been painted. Without a driver the tool works on the static
    // configuration only.
    DMainDlg(zApplication& application, const zLayout& layout);
    ~DMainDlg() override;  // saves what waits to be saved

    Configuration& configuration() { return configuration_; }

  private:
    void connect();  // registers the handlers
    // Opens the driver channel unless it is open, asks for version and adapters, fills the list and selects
    // the adapter that was selected before.
    void setup();
    void setupOnce();  // nothing is done on a list that the driver has not been asked for
    void showAdapters(Discovery found);
    void SetDlgTitle();

    void selChangeInterfaceLB();
    zMenuRows listMenu();
    void doubleClickInterfaceLB();
    void clickedSetupBTN();
    void clickedGlobalBTN();
    void clickedStatsBTN();
    void clickedCloseBTN();
    void warn(const std::string& text, const char* title);

    struct Statistics {
        std::unique_ptr<DStatsDlg> dialog;
        ConditionMark mark;
    };

    Configuration configuration_{"tarvolin"};
    aalInfo adapterQuery_;
    bool asked_ = false;                                   // setup() has been called
    bool askedAboutLists_ = false;                         // that wait, at the end
    int chosen_ = 0;                                       // the adapter that was selected last
    std::vector<FoundAdapter> adapters_;                   // by list position
    std::shared_ptr<PlotWindows> plots_;                   // they stay when the statistics are closed
    std::optional<ConditionMark> mark_;                    // conditions are watched as long as this lives
    std::vector<std::unique_ptr<Statistics>> statistics_;  // those that are open
};
