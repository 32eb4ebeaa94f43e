#include "ui/subdialog.h"

#include "toolkit/controls/button.h"
#include "ui/manual.h"

SubDialog::SubDialog(zWindow& parent, const zLayout& layout) : zFormDialog(parent, layout), line_(board()) {
    line_.advise = [this](const zEdit* field) { return adviceOnEntry(findings(), advisedFields(), field); };
    control<zBitmapButton>(subOkBTN).onClick = [this] { clickedOkBTN(); };
    control<zBitmapButton>(subCancelBTN).onClick = [this] { clickedCancelBTN(); };
    onClose = [this] { clickedCancelBTN(); };
    offerManual(*this);
}

void SubDialog::clickedOkBTN() {
    StoreDefaults();
    okFlag_ = true;
    endModal();
}

void SubDialog::clickedCancelBTN() {
    endModal();
}
