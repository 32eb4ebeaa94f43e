// One routed PVC: the sub-dialog behind Add and Modify of the 1577 page.
#pragma once

#include "model/tvdatbuf.h"
#include "ui/config/pvcdialog.h"

// The PVC that the page and the sub-dialog exchange; what was confirmed last stays for the next one.
extern AtmRoutedPvc pvcXferBuffer;

class DIpPvcDLG : public PvcDialog {
  public:
    // Shows pvcXferBuffer.
    explicit DIpPvcDLG(zWindow& parent);

  private:
    void SetDefaults();
    void StoreDefaults() override;
};
