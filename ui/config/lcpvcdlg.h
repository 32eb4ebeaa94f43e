// The sub-dialog behind Add and Modify of the LEC page: one bridged PVC.
#pragma once

#include "model/tvdatbuf.h"
#include "ui/config/pvcdialog.h"

// The PVC that page and sub-dialog exchange. It keeps its last values for the next Add.
extern AtmBridgedPvc bridgedPvcXferBuffer;

class DLecPvcDLG : public PvcDialog {
  public:
    // Shows bridgedPvcXferBuffer.
    DLecPvcDLG(zWindow& parent, VciOwners owners);

  private:
    void Setup();
    void StoreDefaults() override;
    std::vector<Finding> findings() const override;
    std::span<const AdvisedField> advisedFields() const override;

    int broadcast_ = 0;
};
