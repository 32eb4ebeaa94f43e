// The "Signalling" page: the UNI revision and the ILMI address registration.
#pragma once

#include "toolkit/window/window.h"
#include "ui/config/page.h"

class DConfigDlgSignalPG final : public ConfigPage {
  public:
    explicit DConfigDlgSignalPG(zFormDialog& dialog);

    void ToggleControls() override;
    void putShown(AdapterRecords& records) const override;
    std::string service() const override { return "signalling"; }
    std::span<const AdvisedField> advisedFields() const override;

  private:
    void connect() override;
};
