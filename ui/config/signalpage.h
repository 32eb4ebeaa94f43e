// The "Signalling" page: the UNI revision and the ILMI address registration.
#pragma once

#include "model/tvdatbuf.h"
#include "toolkit/notebook.h"
#include "ui/config/fieldtable.h"

#include <string>

class DConfigDlgSignalPG {
  public:
    explicit DConfigDlgSignalPG(zNotebook& notebook);

    void Setup();
    void setDefaults();
    void storeDefaults();
    void ToggleControls();

  private:
    static const FieldRow<DConfigDlgSignalPG, SigXferBuffer> fields[];

    zBoard& board_;

    std::string networkPrefix_;
    int uniRevision_ = 0, addressRegistration_ = 0, portChangeDetect_ = 0, otherPrefixes_ = 0;
};
