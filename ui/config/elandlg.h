// The sub-dialog behind Add of the LES page: one ELAN client.
#pragma once

#include "model/ui_types.h"
#include "ui/subdialog.h"

#include <string>

// The client that page and sub-dialog exchange.
extern esiSelector esiSelectorXferBuffer;

class DElandlg : public SubDialog {
  public:
    // Shows esiSelectorXferBuffer.
    explicit DElandlg(zWindow& parent);

  private:
    void StoreDefaults() override;

    std::string digits_;  // 14 hexadecimal digits
};
