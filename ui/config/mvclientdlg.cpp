#include "ui/config/mvclientdlg.h"

#include "platform/index.h"
#include "toolkit/controls/listbox.h"
#include "ui/config/confids.h"

#include <fmt/format.h>

std::vector<esiSelector> esiXferBuffer;
std::vector<int> indexXferBuffer;
std::vector<char> permXferBuffer;

void exchangeClients(const std::vector<ElanClient>& clients) {
    esiXferBuffer.clear();
    indexXferBuffer.clear();
    permXferBuffer.clear();
    for (const ElanClient& client : clients) {
        esiXferBuffer.push_back(client.address);
        indexXferBuffer.push_back(client.les);
        permXferBuffer.push_back(client.permanent);
    }
}

std::vector<ElanClient> exchangedClients() {
    std::vector<ElanClient> clients;
    for (std::size_t i = 0; i < esiXferBuffer.size(); ++i)
        clients.push_back({esiXferBuffer[i], indexXferBuffer[i], permXferBuffer[i] != 0});
    return clients;
}

namespace {

constexpr zControlRow rows[] = {
    {.id = clientsAvailableLBL,
     .kind = zKind::staticText,
     .place = {22, 16, 60, 8},
     .text = "Clients Available:"},
    {.id = availableLB, .kind = zKind::listBox, .place = {23, 31, 100, 100}, .style = zSeveral | zSmallFont},
    okRow({16, 140, 50, 18}),
    cancelRow({79, 140, 50, 18}),
    messageRow({6, 160, 135, 8}),
};

constexpr zLayout layout{.id = 566,
                         .name = "moveClients",
                         .caption = "Insert ELAN Client(s)",
                         .width = 147,
                         .height = 168,
                         .icon = programIcon,
                         .rows = rows};

}  // namespace

DMvClientDLG::DMvClientDLG(zWindow& parent) : SubDialog(parent, layout) {
    Setup();
}

void DMvClientDLG::Setup() {
    std::vector<std::string> lines;
    for (const ElanClient& client : exchangedClients())
        lines.push_back(fmt::format("{} - LES {}", client.address.GetF2EsiSelector(), client.les + 1));
    control<zListBox>(availableLB).setLines(std::move(lines));
}

void DMvClientDLG::StoreDefaults() {
    const std::vector<ElanClient> all = exchangedClients();
    std::vector<ElanClient> chosen;
    for (const int position : control<zListBox>(availableLB).allSelected())
        chosen.push_back(all[asIndex(position)]);
    exchangeClients(chosen);
}
