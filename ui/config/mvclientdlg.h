// The ELAN clients of the other servers to choose from: the sub-dialog behind Insert of the LES page.
#pragma once

#include "model/ui_types.h"
#include "ui/subdialog.h"

#include <vector>

// Three lists that the page and the sub-dialog exchange; the entries at one position describe the same client.
extern std::vector<esiSelector> esiXferBuffer;
extern std::vector<int> indexXferBuffer;  // of the server it belongs to, from 0
extern std::vector<char> permXferBuffer;  // 1: permanent mapping, 0: temporary

// The same as one list.
struct ElanClient {
    esiSelector address;
    int les = 0;
    bool permanent = false;
};
void exchangeClients(const std::vector<ElanClient>& clients);
std::vector<ElanClient> exchangedClients();

class DMvClientDLG : public SubDialog {
  public:
    // Shows the exchange lists. After OK they hold what was selected.
    explicit DMvClientDLG(zWindow& parent);

  private:
    void Setup();
    void StoreDefaults() override;
};
