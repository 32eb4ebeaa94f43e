#include "ui/config/confdlg.h"

#include "model/settings.h"
#include "resources/pictureids.h"
#include "toolkit/controls/button.h"
#include "toolkit/controls/notebook.h"
#include "ui/config/confids.h"
#include "ui/config/iplayout.h"
#include "ui/config/leclayout.h"
#include "ui/config/lecslayout.h"
#include "ui/config/leslayout.h"
#include "ui/config/siglayout.h"
#include "ui/subdialog.h"

#include <fcntl.h>

namespace {

constexpr std::size_t longestTitle = 63;

constexpr zControlRow rows[] = {
    {.id = pagesNB, .kind = zKind::notebook, .place = {4, 4, 292, 239}},
    okRow({96, 250, 50, 18}, okBTN),
    cancelRow({154, 250, 50, 18}, cancelBTN),
};

constexpr zLayout frame{.id = 567,
                        .name = "setup",
                        .caption = "Setup",
                        .width = 300,
                        .height = 275,
                        .font = {zFontRow::normal},
                        .icon = programIcon,
                        .rows = rows};

}  // namespace

DConfigDlg::DConfigDlg(zWindow& parent) : zFormDialog(parent, frame), channel_(SetupIoctlDesc, O_RDWR) {
    parent.setCursor(zWatchCursor);

    auto& notebook = control<zNotebook>(pagesNB);
    notebook.addPage(signalPageLayout,
                     [this](zBoard& b) { signalPage_ = std::make_unique<DConfigDlgSignalPG>(b); });
    notebook.addPage(lecPageLayout,
                     [this](zBoard& b) { lecPage_ = std::make_unique<DConfigDlgLECPG>(*this, b); });
    if (advSettings) {
        notebook.addPage(lesPageLayout,
                         [this](zBoard& b) { lesPage_ = std::make_unique<DConfigDlgLESPG>(*this, b); });
        notebook.addPage(lecsPageLayout,
                         [this](zBoard& b) { lecsPage_ = std::make_unique<DConfigDlgLECSPG>(b); });
    }
    notebook.addPage(ip1577PageLayout,
                     [this](zBoard& b) { ip1577Page_ = std::make_unique<DConfigDlgI1577PG>(*this, b); });
    setTitle(("Setup " + dlgTitle).substr(0, longestTitle));
    control<zBitmapButton>(okBTN).onClick = [this] { onOk(); };
    control<zBitmapButton>(cancelBTN).onClick = [this] { onCancel(); };
    onClose = [this] { onCancel(); };
    parent.setCursor(zArrowCursor);
}

int DConfigDlg::onOk() {
    okFlag_ = true;
    if (signalPage_) signalPage_->storeDefaults();
    if (lecPage_) lecPage_->storeDefaults(lecPage_->current());
    if (ip1577Page_) ip1577Page_->storeDefaults();
    if (lesPage_) lesPage_->storeDefaults(lesPage_->current());
    if (lecsPage_) lecsPage_->storeDefaults();
    endModal();
    return 1;
}

int DConfigDlg::onCancel() {
    okFlag_ = false;
    endModal();
    return 0;
}
