#include "ui/config/addresspair.h"

#include "toolkit/controls/board.h"
#include "ui/config/confids.h"

void fillBothFromOne(const zBoard& board) {
    auto& prefix = board.control<zEdit>(networkPrefixED);
    auto& esiSelector = board.control<zEdit>(esiSelectorED);
    prefix.onPartner = [&esiSelector](const std::string& text) { esiSelector.setText(text); };
    esiSelector.onPartner = [&prefix](const std::string& text) { prefix.setText(text); };
}

AddressPair::AddressPair(const zBoard& board)
    : networkPrefix_(board.control<zEdit>(networkPrefixED)),
      esiSelector_(board.control<zEdit>(esiSelectorED)) {
    fillBothFromOne(board);
}

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
