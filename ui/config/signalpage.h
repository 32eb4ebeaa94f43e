// The "Signalling" page: the UNI revision and the ILMI address registration.
#pragma once

#include "model/tvdatbuf.h"
#include "ui/config/page.h"

#include <string>

class DConfigDlgSignalPG : public ConfigPage<DConfigDlgSignalPG, SigXferBuffer> {
  public:
    explicit DConfigDlgSignalPG(zBoard& board);

    void Setup();
    void setDefaults();
    void storeDefaults();
    void ToggleControls();

  private:
    friend class ConfigPage<DConfigDlgSignalPG, SigXferBuffer>;
    static const FieldRow<DConfigDlgSignalPG, SigXferBuffer> fields[];

    std::string networkPrefix_;
    int uniRevision_ = 0, addressRegistration_ = 0, portChangeDetect_ = 0, otherPrefixes_ = 0;
};
