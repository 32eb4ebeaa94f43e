#include "ui/config/pvcdialog.h"

#include "toolkit/controls/edit.h"

#include <utility>

PvcDialog::PvcDialog(zWindow& parent, const zLayout& layout, int addressId, VciOwners owners)
    : SubDialog(parent, layout), addressId_(addressId), owners_(std::move(owners)) {
    control<zEdit>(addressId).bind(&address_);
    control<zNumberEdit>(pvcVciED).bind(&vci_);
    board().group(llcSnapRB).bind(&encapsulation_);
}

void PvcDialog::show(const std::string& address, std::uint16_t vci, bool llcSnap) {
    address_ = address;
    vci_ = vci;
    encapsulation_ = shown_ = llcSnap ? llcSnapRB : nullRB;
    board().load();
    line().refresh();
}

std::string PvcDialog::shownAddress() const {
    std::string address = address_;
    control<zEdit>(addressId_).storeInto(&address);
    return address;
}

unsigned PvcDialog::shownVci() const {
    unsigned vci = vci_;
    control<zNumberEdit>(pvcVciED).storeInto(&vci);
    return vci;
}
