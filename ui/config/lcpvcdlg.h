// One bridged PVC: the sub-dialog behind Add and Modify of the LEC page.
#pragma once

#include "model/tvdatbuf.h"
#include "ui/config/pvcdialog.h"

// The PVC that the page and the sub-dialog exchange; what was confirmed last stays for the next one.
extern AtmBridgedPvc bridgedPvcXferBuffer;

class DLecPvcDLG : public PvcDialog {
  public:
    // Shows bridgedPvcXferBuffer.
    explicit DLecPvcDLG(zWindow& parent);

  private:
    void Setup();
    void StoreDefaults() override;

    int broadcast_ = 0;
};
