// The main window: the adapters that the driver reports, and the ways to set them up and watch them.
#pragma once

#include "app/discovery.h"
#include "config/driverpdf.h"
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
    // Opens the driver channel (without one the tool works on the static configuration only), reads the whole
    // configuration, lists the adapters and shows itself.
    DMainDlg(zApplication& application, const zLayout& layout);

  private:
    // The steps of the construction, in this order.
    void connect();  // controls to handlers
    void setup();    // reads the configuration, asks the driver and fills the list
    void SetDlgTitle();

    void selChangeInterfaceLB();
    void doubleClickInterfaceLB();
    void clickedSetupBTN();
    void clickedGlobalBTN();
    void clickedStatsBTN();
    void clickedCloseBTN();
    void warn(const std::string& text, const char* title);

    OpenedChannel channel_;  // ioctlDesc
    DriverPdfEdit editor_;
    std::optional<aalInfo> adapterQuery_;                 // none without a driver channel
    std::vector<FoundAdapter> adapters_;                  // by list position
    std::vector<std::unique_ptr<DStatsDlg>> statistics_;  // the open ones
};
