// The "1577" page: the Classical IP client with its ATMARP server and its routed PVCs.
#pragma once

#include "driver/requestblocks.h"
#include "model/tvdatbuf.h"
#include "toolkit/window/window.h"
#include "ui/config/page.h"
#include "ui/config/pvceditor.h"
#include "ui/config/pvctable.h"

#include <optional>
#include <string>

// The routed PVCs.
class I1577PGPvcTBL : public PvcTable {
  public:
    explicit I1577PGPvcTBL(zTable& table);

    // Shows the list of the buffer.
    void Update();
};

class DConfigDlgI1577PG : public ConfigPage<DConfigDlgI1577PG, IP1577XferBuffer> {
  public:
    // On its board in `dialog`, which must outlive it.
    DConfigDlgI1577PG(zFormDialog& dialog, zBoard& board);

    void Setup();
    void setDefaults();
    void storeDefaults();
    void ToggleControls();

  private:
    friend class ConfigPage<DConfigDlgI1577PG, IP1577XferBuffer>;
    static const FieldRow<DConfigDlgI1577PG, IP1577XferBuffer> fields[];

    PvcEditor<AtmRoutedPvc>::Page pvcList(zFormDialog& dialog);
    void clickedEnableServerCB();

    I1577PGPvcTBL table_;
    std::optional<IpRequest> request_;  // none without a driver channel
    PvcEditor<AtmRoutedPvc> editor_;

    std::string ip_, subnetMask_, serverIp_, networkPrefix_, esiSelector_;
    int enabled_ = 0, pvcOnly_ = 0;
    int server_ = 0;  // this adapter is the ARP server: shown only, it follows from the addresses
};
