// The "LES..." page: the eight LAN Emulation Servers, one at a time, with the ELAN clients that the
// configuration server directs to them.
#pragma once

#include "driver/dai_io.h"
#include "driver/requestblocks.h"
#include "model/tvdatbuf.h"
#include "toolkit/controls/listbox.h"
#include "toolkit/window/window.h"
#include "ui/config/confids.h"
#include "ui/config/mvclientdlg.h"
#include "ui/config/page.h"

#include <array>
#include <fmt/format.h>
#include <set>
#include <vector>

class DConfigDlgLESPG final : public InstancePage {
  public:
    // In `dialog`, which must outlive it.
    explicit DConfigDlgLESPG(zFormDialog& dialog);

    void Setup(int i) override;
    void storeDefaults(int i) override;
    void ToggleControls() override;
    void putShown(AdapterRecords& records) const override;
    std::string service() const override { return fmt::format("les{}", current() + 1); }
    std::span<const AdvisedField> advisedFields() const override;

  private:
    void connect() override;
    void refill(int i) override { UpdateClientLB(i); }
    void clickedAddBTN();
    void clickedMoveBTN();
    void clickedDeleteBTN();

    // Shows the permanent mappings of a server and, if it is enabled, the temporary ones that the running
    // configuration server has for it.
    void UpdateClientLB(int i);

    // Changes one mapping, in the driver first, unless `ask` is false; the list box stays as it is. `les` is
    // the server that the client is mapped to; -1: the mapping is a temporary one. A permanent one that is
    // deleted is in its server's list until takeOutLeaving().
    void addClient(const esiSelector& client, short les, bool ask = true);
    void delClient(const esiSelector& client, short les, bool ask = true);
    void takeOutLeaving();
    void tellNotDeleted(const esiSelector& client);
    bool agrees(const char* verb, const esiSelector& client);

    void insertClients(const std::vector<ElanClient>& clients);
    esiSelector selectedClient() const;
    zListBox& list() const { return control<zListBox>(clientLB); }

    zFormDialog& dialog_;
    lecsInfo query_;
    lecsRequest request_;
    std::array<std::multiset<esiSelector>, lesCount> leaving_;  // by server
    int position_ = -1;  // the selected position of the list, as remembered
    int choice_ = 0;     // id of the chosen button, Ethernet or Token Ring
};
