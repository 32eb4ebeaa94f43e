// Dialogs that end with OK or Cancel: the layout rows of the two buttons, and sub-dialogs, which edit a
// record that they exchange with the page that opens them.
#pragma once

#include "resources/pictureids.h"
#include "toolkit/window/window.h"
#include "ui/advice.h"

#include <memory>
#include <span>
#include <utility>
#include <vector>

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
    // The layout must contain okRow, cancelRow and messageRow.
    SubDialog(zWindow& parent, const zLayout& layout);

    // Copies the controls to the record.
    virtual void StoreDefaults() = 0;

    // For the message line: what is to be said of what the controls show, and the fields with their parts.
    virtual std::vector<Finding> findings() const { return {}; }
    virtual std::span<const AdvisedField> advisedFields() const { return {}; }
    zMessageLine& line() { return line_; }

  private:
    void clickedOkBTN();
    void clickedCancelBTN();

    zMessageLine line_;
    bool okFlag_ = false;
};

// Runs a sub-dialog; null if it was not closed with OK. It stays on the screen, taking no input, for as long
// as what comes back is kept.
template <class Dialog, class... Arguments>
std::unique_ptr<SubDialog> confirmed(zWindow& parent, Arguments&&... arguments) {
    auto dialog = std::make_unique<Dialog>(parent, std::forward<Arguments>(arguments)...);
    dialog->runModalAndStay();
    if (!dialog->okFlag()) return nullptr;
    dialog->setCursor(zWatchCursor);
    return dialog;
}
