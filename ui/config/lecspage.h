// The "LECS" page: the LAN Emulation Configuration Server, its address and what it tells new ELANs.
#pragma once

#include "toolkit/window/window.h"
#include "ui/config/addresspair.h"
#include "ui/config/page.h"

#include <optional>

class DConfigDlgLECSPG final : public ConfigPage {
  public:
    explicit DConfigDlgLECSPG(zFormDialog& dialog);

    void storeDefaults() override;
    void ToggleControls() override;
    void putShown(AdapterRecords& records) const override;
    std::string service() const override { return "lecs"; }
    std::span<const AdvisedField> advisedFields() const override;

  private:
    void connect() override;
    void clickedWellKnownAddressCB();

    int choice_ = 0;  // id of the chosen button, Ethernet or Token Ring
    std::optional<AddressPair> address_;
};
