#include "ui/config/addresspair.h"

#include "toolkit/controls/board.h"
#include "ui/config/confids.h"

AddressPair::AddressPair(const zBoard& board)
    : networkPrefix_(board.control<zEdit>(networkPrefixED)),
      esiSelector_(board.control<zEdit>(esiSelectorED)) {}

void AddressPair::showWellKnown() {
    if (!wellKnownShown_) {
        networkPrefix_.store();
        esiSelector_.store();
    }
    wellKnownShown_ = true;
    networkPrefix_.setText(wellKnownAddress.networkPrefix);
    esiSelector_.setText(wellKnownAddress.esiSelector);
}

void AddressPair::showOwn() {
    wellKnownShown_ = false;
    networkPrefix_.load();
    esiSelector_.load();
}
