// The main window: lists the adapters and opens the configuration, statistics and global settings dialogs.
#pragma once

#include "app/discovery.h"
#include "change/configuration.h"
#include "driver/channel.h"
#include "driver/dai_io.h"
#include "toolkit/window/window.h"
#include "ui/stats/statsdlg.h"

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
    // Opens the driver channel, reads the configuration of all adapters, lists the adapters and shows the
    // window. Without a driver the tool works on the static configuration only.
    DMainDlg(zApplication& application, const zLayout& layout);
    ~DMainDlg() override;  // saves what waits to be saved

  private:
    // Steps of the construction, in this order.
    void connect();  // registers the handlers
    void setup();    // reads the configuration, asks the driver, fills the list
    void SetDlgTitle();

    void selChangeInterfaceLB();
    void doubleClickInterfaceLB();
    void clickedSetupBTN();
    void clickedGlobalBTN();
    void clickedStatsBTN();
    void clickedCloseBTN();
    void warn(const std::string& text, const char* title);

    OpenedChannel channel_;  // ioctlDesc
    Configuration configuration_{"tarvolin"};
    std::optional<aalInfo> adapterQuery_;                 // empty without a driver
    std::vector<FoundAdapter> adapters_;                  // by list position
    std::vector<std::unique_ptr<DStatsDlg>> statistics_;  // those that are open
};
