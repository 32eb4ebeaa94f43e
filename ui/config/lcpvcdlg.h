// One bridged PVC: the sub-dialog behind Add and Modify.
#pragma once

#include "model/tvdatbuf.h"
#include "toolkit/window.h"

#include <string>

// The PVC that the page and the sub-dialog exchange; what was confirmed last stays for the next one.
extern AtmBridgedPvc bridgedPvcXferBuffer;

class DLecPvcDLG : public zFormDialog {
  public:
    // Shows bridgedPvcXferBuffer.
    explicit DLecPvcDLG(zWindow& parent);

    bool okFlag() const { return okFlag_; }  // after runModal(): the buffer holds what was confirmed

  private:
    void Setup();
    void StoreDefaults();
    void clickedOkBTN();
    void clickedCancelBTN();

    bool okFlag_ = false;
    std::string mac_;  // 12 digits
    unsigned vci_ = 0;
    int encapsulation_ = 0;  // id of the chosen button
    int broadcast_ = 0;
};
