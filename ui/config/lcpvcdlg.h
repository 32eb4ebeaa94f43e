// The sub-dialog behind Add and Modify of the LEC page: one bridged PVC.
#pragma once

#include "model/tvdatbuf.h"
#include "ui/config/pvcdialog.h"

// The PVC that page and sub-dialog exchange. It keeps its last values for the next Add.
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
