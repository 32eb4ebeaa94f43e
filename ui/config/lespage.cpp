#include "ui/config/lespage.h"

#include "driver/channel.h"
#include "model/settings.h"
#include "platform/index.h"
#include "toolkit/controls/tabstrip.h"
#include "toolkit/window/messagebox.h"
#include "ui/config/elandlg.h"
#include "ui/config/elantype.h"
#include "ui/config/leslayout.h"
#include "ui/config/listedit.h"

#include <algorithm>
#include <fmt/format.h>

namespace {

constexpr const char* errorTitle = "ELAN Client Error";

constexpr zBindingRow<LESXferBuffer> fields[] = {
    {elanNameED, &LESXferBuffer::elanName},   {strictNameCB, &LESXferBuffer::strictName},
    {strictMtuCB, &LESXferBuffer::strictMtu}, {elanMtuCBO, &LESXferBuffer::mtuPosition},
    {enableCB, &LESXferBuffer::enabled},
};

constexpr AdvisedField advised[] = {
    {elanNameED, "elanName"},
};

LESXferBuffer& bufferOf(int les) {
    return lesXferBuffer[asIndex(les)];
}

std::string mappingLine(const esiSelector& client, bool permanent) {
    return std::string(client.GetF2EsiSelector()) + (permanent ? "  PERM" : "  TEMP");
}

}  // namespace

DConfigDlgLESPG::DConfigDlgLESPG(zFormDialog& dialog)
    : dialog_(dialog), query_(SetupIoctlDesc, static_cast<std::uint8_t>(currentAdapter)),
      request_(SetupIoctlDesc, static_cast<std::uint8_t>(currentAdapter)) {
    tvlog << "creating LES page" << std::endl;
    Setup(0);
}

void DConfigDlgLESPG::connect() {
    board().group(ethernetRB).bind(&choice_);
    Setup(0);
    board().load();
    UpdateClientLB(0);
    ToggleControls();

    togglesControls(enableCB);
    control<zTabStrip>(lesTB).onSelect = [this](int les) { turnTo(les); };
    control<zBitmapButton>(addBTN).onClick = [this] { clickedAddBTN(); };
    control<zBitmapButton>(insertBTN).onClick = [this] { clickedMoveBTN(); };
    control<zBitmapButton>(deleteBTN).onClick = [this] { clickedDeleteBTN(); };
}

void DConfigDlgLESPG::Setup(int i) {
    choice_ = elanTypeButton(bufferOf(i).elanType);
    if (attached()) board().bind(bufferOf(i), fields);
}

void DConfigDlgLESPG::storeDefaults(int i) {
    storeControls();
    storeElanType(bufferOf(i).elanType, choice_, fmt::format("Les{}", i));
}

void DConfigDlgLESPG::ToggleControls() {
    board().enable(lesPageRules, checked(enableCB) ? serverEnabled : 0U, lesPageNeeds);
}

void DConfigDlgLESPG::putShown(AdapterRecords& records) const {
    if (attached())
        records.les[asIndex(current())] = shownOn<LESXferBuffer>(board(), bufferOf(current()), fields);
}

std::span<const AdvisedField> DConfigDlgLESPG::advisedFields() const {
    return advised;
}

void DConfigDlgLESPG::UpdateClientLB(int i) {
    std::vector<std::string> lines;
    for (const esiSelector& client : bufferOf(i).clients) lines.push_back(mappingLine(client, true));
    if (checked(enableCB))
        for (const LecsRowView row : query_.GetEntireTable())
            if (row.kind() == LecsRowView::temporary && row.les() == i)
                lines.push_back(mappingLine(row.client(), false));
    list().setLines(std::move(lines));
    list().select(position_);
    changed();
}

esiSelector DConfigDlgLESPG::selectedClient() const {
    esiSelector client;
    client = list().line(list().selected());
    return client;
}

void DConfigDlgLESPG::clickedAddBTN() {
    position_ = list().selected();
    if (position_ >= 0) esiSelectorXferBuffer = selectedClient();
    const auto dialog = confirmed<DElandlg>(dialog_);
    if (!dialog) return;
    addClient(esiSelectorXferBuffer, static_cast<short>(current()));
    UpdateClientLB(current());
}

void DConfigDlgLESPG::clickedDeleteBTN() {
    position_ = list().selected();
    if (position_ < 0) return;
    const esiSelector client = selectedClient();
    const auto& permanent = bufferOf(current()).clients;
    const bool held = std::find(permanent.begin(), permanent.end(), client) != permanent.end();
    delClient(client, static_cast<short>(held ? current() : -1));
    takeOutLeaving();
    if (held)
        UpdateClientLB(current());
    else
        list().select(position_);
}

void DConfigDlgLESPG::addClient(const esiSelector& client, short les, bool ask) {
    const auto unit = static_cast<std::uint8_t>(les);
    const bool taken = ask && request_.addClient(static_cast<std::uint8_t>(currentAdapter), unit,
                                                 lecs_req::mapping(client, unit)) == 0;
    if (taken || agrees("Add", client)) bufferOf(les).clients.push_back(client);
}

void DConfigDlgLESPG::delClient(const esiSelector& client, short les, bool ask) {
    const bool taken = ask && request_.delClient(lecs_req::mapping(client, 0)) == 0;
    if (les < 0) {
        // A temporary mapping is in the running server only: there is nothing else to change.
        if (taken)
            position_ = std::max(0, position_ - 1);
        else
            tellNotDeleted(client);
        return;
    }
    if (!taken && !agrees("Delete", client)) return;
    leaving_[asIndex(les)].insert(client);
    position_ = std::max(0, position_ - 1);
}

void DConfigDlgLESPG::takeOutLeaving() {
    for (int les = 0; les < lesCount; ++les)
        if (!leaving_[asIndex(les)].empty()) takeOut(bufferOf(les).clients, leaving_[asIndex(les)]);
}

void DConfigDlgLESPG::tellNotDeleted(const esiSelector& client) {
    takeOutLeaving();
    zMessageBox(dialog_.application(), dialog_.shell(), zMessageStyle::warning,
                std::string("Unable to Dynamically Delete ") + client.GetF2EsiSelector(), errorTitle);
}

// A signal can end the program at the question: by then the lists are what the driver has.
bool DConfigDlgLESPG::agrees(const char* verb, const esiSelector& client) {
    takeOutLeaving();
    return agreesToStatic(dialog_, verb, client.GetF2EsiSelector(), errorTitle);
}

void DConfigDlgLESPG::clickedMoveBTN() {
    std::vector<ElanClient> clients;
    for (int les = 0; les < lesCount; ++les) {
        if (les == current()) continue;
        tvlog << "getting perm entries: LES" << les << std::endl;
        for (const esiSelector& client : bufferOf(les).clients) clients.push_back({client, les, true});
    }
    const auto table = query_.GetEntireTable();
    if (table) tvlog << "getting temp entries" << std::endl;
    for (const LecsRowView row : table)
        if (row.kind() == LecsRowView::temporary && row.les() != current())
            clients.push_back({row.client(), row.les(), false});
    exchangeClients(clients);
    if (const auto dialog = confirmed<DMvClientDLG>(dialog_)) insertClients(exchangedClients());
}

// Moves clients of other servers here.
void DConfigDlgLESPG::insertClients(const std::vector<ElanClient>& clients) {
    if (clients.empty()) return;
    const AnswerWatch answers(SetupIoctlDesc);
    for (const ElanClient& client : clients) {
        delClient(client.address, static_cast<short>(client.permanent ? client.les : -1), !answers.missed());
        addClient(client.address, static_cast<short>(current()), !answers.missed());
    }
    takeOutLeaving();
    UpdateClientLB(current());
}
