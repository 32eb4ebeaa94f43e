// The "LEC..." page: the four LAN Emulation Clients, one at a time, with their bridged PVCs.
#pragma once

#include "driver/requestblocks.h"
#include "model/tvdatbuf.h"
#include "toolkit/window/window.h"
#include "ui/config/addresspair.h"
#include "ui/config/page.h"
#include "ui/config/pvceditor.h"
#include "ui/config/pvctable.h"

#include <fmt/format.h>
#include <optional>

// The bridged PVCs of one client.
class LECPGPvcTBL : public PvcTable {
  public:
    explicit LECPGPvcTBL(zTable& table);

    // Shows the list of a client's buffer.
    void Update(int lec);
};

class DConfigDlgLECPG final : public InstancePage {
  public:
    // In `dialog`, which must outlive it.
    explicit DConfigDlgLECPG(zFormDialog& dialog);

    void Setup(int i) override;
    void storeDefaults(int i) override;
    void ToggleControls() override;
    void putShown(AdapterRecords& records) const override;
    std::string service() const override { return fmt::format("lec{}", current() + 1); }
    std::span<const AdvisedField> advisedFields() const override;

  private:
    void connect() override;
    void refill(int i) override { table_->Update(i); }
    PvcEditor<AtmBridgedPvc>::Page pvcList();
    void clickedLECSRBGroup(int id);
    void selChangeElanMTUCBO();

    zFormDialog& dialog_;
    LecRequest request_;
    int choice_ = 0;   // id of the chosen button, lecsRB or lesRB, as stored
    int clicked_ = 0;  // the same, as shown

    // Created with the controls.
    std::optional<AddressPair> address_;
    std::optional<LECPGPvcTBL> table_;
    std::optional<PvcEditor<AtmBridgedPvc>> editor_;
};
