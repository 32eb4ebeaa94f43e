// The sub-dialog behind Add and Modify of the 1577 page: one routed PVC.
#pragma once

#include "model/tvdatbuf.h"
#include "ui/config/pvcdialog.h"

// The PVC that page and sub-dialog exchange. It keeps its last values for the next Add.
extern AtmRoutedPvc pvcXferBuffer;

class DIpPvcDLG : public PvcDialog {
  public:
    // Shows pvcXferBuffer.
    DIpPvcDLG(zWindow& parent, VciOwners owners);

  private:
    void SetDefaults();
    void StoreDefaults() override;
    std::vector<Finding> findings() const override;
    std::span<const AdvisedField> advisedFields() const override;
};
