// The "1577" page: the Classical IP client with its ATMARP server and its routed PVCs.
#pragma once

#include "driver/requestblocks.h"
#include "model/tvdatbuf.h"
#include "toolkit/window/window.h"
#include "ui/config/page.h"
#include "ui/config/pvceditor.h"
#include "ui/config/pvctable.h"

#include <optional>

// The routed PVCs.
class I1577PGPvcTBL : public PvcTable {
  public:
    explicit I1577PGPvcTBL(zTable& table);

    // Shows the list of the buffer.
    void Update();
};

class DConfigDlgI1577PG final : public ConfigPage {
  public:
    // In `dialog`, which must outlive it.
    explicit DConfigDlgI1577PG(zFormDialog& dialog);

    void ToggleControls() override;
    void putShown(AdapterRecords& records) const override;
    std::string service() const override { return "ip"; }
    std::span<const AdvisedField> advisedFields() const override;

  private:
    void connect() override;
    PvcEditor<AtmRoutedPvc>::Page pvcList();
    void clickedEnableServerCB();

    zFormDialog& dialog_;
    IpRequest request_;

    // Created with the controls.
    std::optional<I1577PGPvcTBL> table_;
    std::optional<PvcEditor<AtmRoutedPvc>> editor_;
};
