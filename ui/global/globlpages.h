// The pages of the global settings.
#pragma once

#include "toolkit/controls/notebook.h"
#include "toolkit/window/window.h"

// "Application": refresh rate, advanced mode, font of the tables.
class DGlobalDlgAppPG {
  public:
    DGlobalDlgAppPG(zWindow& dialog, zNotebook& notebook);

    void StoreDefaults();

  private:
    void clickedFontBTN();

    zWindow& dialog_;
    zBoard& board_;
    int rate_ = 0;  // position in the list
};

// "Connections": figures that no driver reports yet.
class DGlobalDlgConnectPG {
  public:
    explicit DGlobalDlgConnectPG(zNotebook& notebook);
};

// "Debugging": what the driver traces of itself.
class DGlobalDlgDebugPG {
  public:
    explicit DGlobalDlgDebugPG(zNotebook& notebook);

    // A box has been clicked, even if it shows its old state again.
    bool changed() const { return changed_; }
    void StoreDefaults();

  private:
    void clickedApiCB() { changed_ = true; }
    void clickedSignalingCB() { changed_ = true; }
    void clickedIlmiCB() { changed_ = true; }

    zBoard& board_;
    bool changed_ = false;
};
