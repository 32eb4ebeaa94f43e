// A sub-dialog of a configuration page: it edits an exchange record of the page and ends with OK or Cancel.
#pragma once

#include "resources/pictureids.h"
#include "toolkit/window.h"
#include "ui/config/confids.h"

// The rows of its buttons.
constexpr zControlRow okRow(const zRect& place) {
    return {.id = subOkBTN,
            .kind = zKind::bitmapButton,
            .place = place,
            .text = "OK",
            .picture = okBitmap,
            .style = zDefaultButton};
}
constexpr zControlRow cancelRow(const zRect& place) {
    return {.id = subCancelBTN,
            .kind = zKind::bitmapButton,
            .place = place,
            .text = "Cancel",
            .picture = cancelBitmap,
            .style = zCancelButton};
}

class SubDialog : public zFormDialog {
  public:
    bool okFlag() const { return okFlag_; }  // after runModal(): the record holds what was confirmed

  protected:
    // The layout has okRow and cancelRow.
    SubDialog(zWindow& parent, const zLayout& layout);

    // Controls to record.
    virtual void StoreDefaults() = 0;

  private:
    void clickedOkBTN();
    void clickedCancelBTN();

    bool okFlag_ = false;
};

// Runs a sub-dialog. True: it ended with OK.
template <class Dialog> bool confirmed(zWindow& parent) {
    Dialog dialog(parent);
    dialog.runModal();
    return dialog.okFlag();
}
