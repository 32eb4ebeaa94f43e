// The "LES..." page: the eight LAN Emulation Servers, one at a time, with the ELAN clients that the configuration
// server directs to them.
#pragma once

#include "driver/dai_io.h"
#include "driver/requestblocks.h"
#include "model/tvdatbuf.h"
#include "toolkit/controls/listbox.h"
#include "toolkit/window/window.h"
#include "ui/config/mvclientdlg.h"
#include "ui/config/page.h"

#include <optional>
#include <string>
#include <vector>

class DConfigDlgLESPG : public ConfigPage<DConfigDlgLESPG, LESXferBuffer> {
  public:
    // On its board in `dialog`, which must outlive it.
    DConfigDlgLESPG(zFormDialog& dialog, zBoard& board);

    // `i`: a server, from 0.
    void Setup(int i);
    void setDefaults(int i);
    void storeDefaults(int i);
    void ToggleControls();

  private:
    friend class ConfigPage<DConfigDlgLESPG, LESXferBuffer>;
    static const FieldRow<DConfigDlgLESPG, LESXferBuffer> fields[];

    void selChangeLesTB(int next);
    void clickedAddBTN();
    void clickedMoveBTN();
    void clickedDeleteBTN();

    // Shows the permanent mappings of a server and, if it is enabled, the temporary ones that the running
    // configuration server has for it.
    void UpdateClientLB(int i);

    // One mapping, in the driver first, if it is to be asked; the list is left as it stands. `les`: the server it
    // belongs to; -1: it is a temporary one.
    void addClient(const esiSelector& client, short les, bool ask = true);
    void delClient(const esiSelector& client, short les, bool ask = true);

    void insertClients(const std::vector<ElanClient>& clients);
    void stepUp();
    esiSelector selectedClient() const;

    zFormDialog& dialog_;
    zListBox& list_;
    std::optional<lecsInfo> query_;  // none without a driver channel
    std::optional<lecsRequest> request_;
    int position_ = -1;  // that was selected in the list

    std::string elanName_;
    int choice_ = 0;  // id of the chosen button, Ethernet or Token Ring
    int enabled_ = 0, strictName_ = 0, strictMtu_ = 0, elanMtu_ = 0;
};
