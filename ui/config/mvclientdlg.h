// The sub-dialog behind Insert of the LES page: chooses ELAN clients of the other servers.
#pragma once

#include "model/ui_types.h"
#include "ui/subdialog.h"

#include <vector>

// Three lists that the page and the sub-dialog exchange; entries at the same position describe the same
// client.
extern std::vector<esiSelector> esiXferBuffer;
extern std::vector<int> indexXferBuffer;  // index of the server, from 0
extern std::vector<char> permXferBuffer;  // 1: permanent mapping, 0: temporary

// One entry of the three lists.
struct ElanClient {
    esiSelector address;
    int les = 0;
    bool permanent = false;
};
void exchangeClients(const std::vector<ElanClient>& clients);
std::vector<ElanClient> exchangedClients();

class DMvClientDLG : public SubDialog {
  public:
    // Shows the exchange lists. After OK they hold the selected clients only.
    explicit DMvClientDLG(zWindow& parent);

  private:
    void Setup();
    void StoreDefaults() override;
};
