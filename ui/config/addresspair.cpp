#include "ui/config/addresspair.h"

#include "toolkit/controls/board.h"
#include "ui/config/confids.h"

AddressPair::AddressPair(const zBoard& board)
    : networkPrefix_(board.control<zEdit>(networkPrefixED)),
      esiSelector_(board.control<zEdit>(esiSelectorED)) {}

void AddressPair::showWellKnown() {
    // Shown already: the variables keep the address from before.
    if (networkPrefix_.text() == wellKnownAddress.networkPrefix &&
        esiSelector_.text() == wellKnownAddress.esiSelector)
        return;
    networkPrefix_.store();
    esiSelector_.store();
    networkPrefix_.setText(wellKnownAddress.networkPrefix);
    esiSelector_.setText(wellKnownAddress.esiSelector);
}

void AddressPair::showOwn() {
    networkPrefix_.load();
    esiSelector_.load();
}
