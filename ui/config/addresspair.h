// The two fields of an ATM address on a page, and the well-known address of the LECS in them.
#pragma once

#include "model/wellknown.h"
#include "toolkit/controls/edit.h"

class zBoard;

// A whole address that is pasted into one of the fields networkPrefixED and esiSelectorED of a board fills
// the other one, too.
void fillBothFromOne(const zBoard& board);

class AddressPair {
  public:
    // The fields networkPrefixED and esiSelectorED of a board, which are bound to the transfer buffer. Either
    // is filled from the other one (fillBothFromOne).
    explicit AddressPair(const zBoard& board);

    // Stores what was typed so far, and shows the well-known address. When that was shown before, edited or
    // not, nothing is stored: the address that was typed first stays.
    void showWellKnown();

    // Shows what is stored.
    void showOwn();

    // The fields show another address now, which came from the transfer buffer.
    void reloaded() { wellKnownShown_ = false; }

  private:
    zEdit& networkPrefix_;
    zEdit& esiSelector_;
    bool wellKnownShown_ = false;
};
