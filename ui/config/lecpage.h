// The "LEC..." page: the four LAN Emulation Clients, one at a time, with their bridged PVCs.
#pragma once

#include "driver/requestblocks.h"
#include "model/tvdatbuf.h"
#include "toolkit/window/window.h"
#include "ui/config/addresspair.h"
#include "ui/config/page.h"
#include "ui/config/pvceditor.h"
#include "ui/config/pvctable.h"

#include <optional>
#include <string>

// The bridged PVCs of one client.
class LECPGPvcTBL : public PvcTable {
  public:
    explicit LECPGPvcTBL(zTable& table);

    // Shows the list of a client's buffer.
    void Update(int lec);
};

class DConfigDlgLECPG : public ConfigPage<DConfigDlgLECPG, LECXferBuffer> {
  public:
    // On its board in `dialog`, which must outlive it.
    DConfigDlgLECPG(zFormDialog& dialog, zBoard& board);

    // `i`: a client, from 0.
    void Setup(int i);
    void setDefaults(int i);
    void storeDefaults(int i);
    void ToggleControls();

  private:
    friend class ConfigPage<DConfigDlgLECPG, LECXferBuffer>;
    static const FieldRow<DConfigDlgLECPG, LECXferBuffer> fields[];

    PvcEditor<AtmBridgedPvc>::Page pvcList(zFormDialog& dialog);
    void clickedLECSRBGroup(int id);
    void selChangeElanMTUCBO();
    void selChangeLecTB(int next);

    AddressPair address_;
    LECPGPvcTBL table_;
    std::optional<LecRequest> request_;  // none without a driver channel
    PvcEditor<AtmBridgedPvc> editor_;

    std::string macText_, elanName_, networkPrefix_, esiSelector_;
    unsigned l3Mtu_ = 0;
    int choice_ = 0;  // id of the chosen button, LECS or LES
    int enabled_ = 0, pvcOnly_ = 0, elanMtu_ = 0, elanType_ = 0;
};
