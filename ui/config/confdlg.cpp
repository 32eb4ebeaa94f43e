#include "ui/config/confdlg.h"

#include "model/settings.h"
#include "platform/index.h"
#include "resources/pictureids.h"
#include "toolkit/controls/button.h"
#include "toolkit/controls/notebook.h"
#include "ui/config/confids.h"
#include "ui/config/ip1577page.h"
#include "ui/config/iplayout.h"
#include "ui/config/leclayout.h"
#include "ui/config/lecpage.h"
#include "ui/config/lecslayout.h"
#include "ui/config/lecspage.h"
#include "ui/config/leslayout.h"
#include "ui/config/lespage.h"
#include "ui/config/siglayout.h"
#include "ui/config/signalpage.h"
#include "ui/manual.h"
#include "ui/subdialog.h"

#include <fcntl.h>

namespace {

constexpr std::size_t longestTitle = 63;

constexpr zControlRow rows[] = {
    {.id = pagesNB, .kind = zKind::notebook, .place = {4, 4, 292, 239}},
    okRow({96, 250, 50, 18}, okBTN),
    cancelRow({154, 250, 50, 18}, cancelBTN),
    messageRow({6, 272, 288, 8}),
};

template <class Page> std::unique_ptr<ConfigPage> make(zFormDialog& dialog) {
    return std::make_unique<Page>(dialog);
}

const struct {
    const zLayout& layout;
    std::unique_ptr<ConfigPage> (*make)(zFormDialog& dialog);
    bool advanced = false;  // only with advanced settings
} pages[] = {
    {signalPageLayout, make<DConfigDlgSignalPG>}, {lecPageLayout, make<DConfigDlgLECPG>},
    {lesPageLayout, make<DConfigDlgLESPG>, true}, {lecsPageLayout, make<DConfigDlgLECSPG>, true},
    {ip1577PageLayout, make<DConfigDlgI1577PG>},
};

AdapterRecords withoutLists(AdapterRecords records) {
    for (AtmLEC& client : records.lec) client.pvcs.clear();
    for (AtmLES& server : records.les) server.clients.clear();
    records.ip.pvcs.clear();
    return records;
}

}  // namespace

const zLayout setupLayout{.id = 567,
                          .name = "setup",
                          .caption = "Setup",
                          .width = 300,
                          .height = 280,
                          .font = {zFontRow::normal},
                          .icon = programIcon,
                          .rows = rows};

DConfigDlg::DConfigDlg(zWindow& parent)
    : zFormDialog(parent, setupLayout), line_(board()),
      stored_(withoutLists(AdapterRecords(atmDevices, currentAdapter))) {
    parent.setCursor(zWatchCursor);
    channel_.emplace(SetupIoctlDesc, O_RDWR);

    auto& notebook = control<zNotebook>(pagesNB);
    for (const auto& page : pages) {
        if (page.advanced && !advSettings) continue;
        pages_.push_back(page.make(*this));
        notebook.addPage(page.layout, [this, made = pages_.back().get()](zBoard& board) {
            made->attach(board);
            line_.watch(board);
            line_.refresh();
        });
        pages_.back()->onChanged = [this] { line_.refresh(); };
    }
    setTitle(("Setup " + dlgTitle).substr(0, longestTitle));
    control<zBitmapButton>(okBTN).onClick = [this] { onOk(); };
    control<zBitmapButton>(cancelBTN).onClick = [this] { onCancel(); };
    onClose = [this] { onCancel(); };
    line_.advise = [this](const zEdit* field) { return advise(field); };
    notebook.onSelect = [this](int) { line_.refresh(); };
    offerManual(*this);
    parent.setCursor(zArrowCursor);
}

int DConfigDlg::onOk() {
    okFlag_ = true;
    for (const auto& page : pages_) page->storeDefaults();
    endModal();
    return 1;
}

int DConfigDlg::onCancel() {
    okFlag_ = false;
    endModal();
    return 0;
}

// Of the values in the transfer buffers, and of those that are on the controls.
zMessageLine::Advice DConfigDlg::advise(const zEdit* field) {
    const int top = control<zNotebook>(pagesNB).selected();
    if (top < 0) return {};
    AdapterRecords records = stored_;
    for (std::size_t m = 0; m < xferBuffer.size(); ++m) records.lec[m] = xferBuffer[m];
    for (std::size_t m = 0; m < lesXferBuffer.size(); ++m) records.les[m] = lesXferBuffer[m];
    records.lecs = lecsXferBuffer;
    records.ip = ip1577XferBuffer;
    records.sig = sigXferBuffer;
    for (const auto& page : pages_) page->putShown(records);
    const ConfigPage& page = *pages_[asIndex(top)];
    const std::string service = page.service();
    return adviceOn(CheckService(records, service), service, page.advisedFields(), field);
}
