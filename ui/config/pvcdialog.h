// The common part of the sub-dialogs for one PVC: an address, a VCI and an encapsulation.
#pragma once

#include "ui/config/confids.h"
#include "ui/config/vciowners.h"
#include "ui/subdialog.h"

#include <cstdint>
#include <string>

class PvcDialog : public SubDialog {
  protected:
    // `addressId`: id of the layout's address field. `owners`: of the VCIs that others have.
    PvcDialog(zWindow& parent, const zLayout& layout, int addressId, VciOwners owners);

    // Loads the controls. `address` is the value that the address field is bound to.
    void show(const std::string& address, std::uint16_t vci, bool llcSnap);

    // Stores the VCI and, if it was changed, the encapsulation; returns the address.
    template <class Pvc> const std::string& store(Pvc& pvc) {
        board().store();
        pvc.vci = static_cast<std::uint16_t>(vci_);
        if (encapsulation_ != shown_) pvc.encapsulation = encapsulation_ == llcSnapRB;
        return address_;
    }

    // What the controls show, for advice.
    std::string shownAddress() const;
    unsigned shownVci() const;
    const VciOwners& owners() const { return owners_; }

  private:
    int addressId_;
    VciOwners owners_;
    std::string address_;
    unsigned vci_ = 0;
    int encapsulation_ = 0, shown_ = 0;  // button ids
};
