// The "LECS" page: the LAN Emulation Configuration Server, its address and what it tells new ELANs.
#pragma once

#include "model/tvdatbuf.h"
#include "ui/config/addresspair.h"
#include "ui/config/page.h"

#include <string>

class DConfigDlgLECSPG : public ConfigPage<DConfigDlgLECSPG, LECSXferBuffer> {
  public:
    explicit DConfigDlgLECSPG(zBoard& board);

    void Setup();
    void setDefaults();
    void storeDefaults();
    void ToggleControls();

  private:
    friend class ConfigPage<DConfigDlgLECSPG, LECSXferBuffer>;
    static const FieldRow<DConfigDlgLECSPG, LECSXferBuffer> fields[];

    void clickedWellKnownAddressCB();

    AddressPair address_;

    std::string networkPrefix_, esiSelector_;
    int choice_ = 0;  // id of the chosen button, Ethernet or Token Ring
    int enabled_ = 0, etherMtu_ = 0, tokenRingMtu_ = 0;
    int useWellKnown_ = 0;  // never stored
};
