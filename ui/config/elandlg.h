// One ELAN client: the sub-dialog behind Add of the LES page.
#pragma once

#include "model/ui_types.h"
#include "ui/subdialog.h"

#include <string>

// The client that the page and the sub-dialog exchange.
extern esiSelector esiSelectorXferBuffer;

class DElandlg : public SubDialog {
  public:
    // Shows esiSelectorXferBuffer.
    explicit DElandlg(zWindow& parent);

  private:
    void StoreDefaults() override;

    std::string digits_;  // 14
};
