#include "ui/config/pvcdialog.h"

#include "toolkit/controls/edit.h"

PvcDialog::PvcDialog(zWindow& parent, const zLayout& layout, int addressId) : SubDialog(parent, layout) {
    control<zEdit>(addressId).bind(&address_);
    control<zNumberEdit>(pvcVciED).bind(&vci_);
    board().group(llcSnapRB).bind(&encapsulation_);
}

void PvcDialog::show(const std::string& address, std::uint16_t vci, bool llcSnap) {
    address_ = address;
    vci_ = vci;
    encapsulation_ = shown_ = llcSnap ? llcSnapRB : nullRB;
    board().load();
}
