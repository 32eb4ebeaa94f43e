// Dialogs that end with OK or Cancel: the layout rows of the two buttons, and sub-dialogs, which edit a
// record that they exchange with the page that opens them.
#pragma once

#include "resources/pictureids.h"
#include "toolkit/window/window.h"

enum SubDialogControl { subOkBTN = 706, subCancelBTN = 707 };

constexpr zControlRow okRow(const zRect& place, int id = subOkBTN) {
    return {.id = id,
            .kind = zKind::bitmapButton,
            .place = place,
            .text = "OK",
            .picture = okBitmap,
            .style = zDefaultButton};
}

constexpr zControlRow cancelRow(const zRect& place, int id = subCancelBTN) {
    zControlRow row = okRow(place, id);
    row.text = "Cancel";
    row.picture = cancelBitmap;
    row.style = zCancelButton;
    return row;
}

class SubDialog : public zFormDialog {
  public:
    bool okFlag() const { return okFlag_; }  // valid after runModal(): closed with OK

  protected:
    // The layout must contain okRow and cancelRow.
    SubDialog(zWindow& parent, const zLayout& layout);

    // Copies the controls to the record.
    virtual void StoreDefaults() = 0;

  private:
    void clickedOkBTN();
    void clickedCancelBTN();

    bool okFlag_ = false;
};

// Runs a sub-dialog; true if it was closed with OK.
template <class Dialog> bool confirmed(zWindow& parent) {
    Dialog dialog(parent);
    dialog.runModal();
    return dialog.okFlag();
}
