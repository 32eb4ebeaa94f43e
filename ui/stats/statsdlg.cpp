#include "ui/stats/statsdlg.h"

#include "model/settings.h"
#include "platform/index.h"
#include "resources/pictureids.h"
#include "toolkit/controls/button.h"
#include "toolkit/controls/statics.h"
#include "ui/adapterwatch.h"
#include "ui/manual.h"
#include "ui/stats/aal5page.h"
#include "ui/stats/ip1577page.h"
#include "ui/stats/lecsstatspage.h"
#include "ui/stats/lecstatspage.h"
#include "ui/stats/lesstatspage.h"
#include "ui/stats/signallingpage.h"
#include "ui/stats/statslayouts.h"
#include "ui/stats/statsmenu.h"

#include <fmt/format.h>

namespace {

constexpr std::size_t longestTitle = 63;

// For all pages of a dialog that is opened: a driver that is not slow needs far less, and nobody waits longer
// for a window without wondering.
constexpr std::chrono::seconds fillTime{1};

constexpr zMore staysMiddle{.right = 50, .down = 100};

constexpr zControlRow rows[] = {
    {.kind = zKind::notebook, .place = {4, 4, 292, 239}, .name = "pages", .more = takesAll},
    {.kind = zKind::bitmapButton,
     .place = {38, 250, 50, 18},
     .text = "Clear",
     .name = "clear",
     .tooltip = "Counters of this page start from 0; Shift+Clear takes that back",
     .more = staysMiddle},
    {.kind = zKind::bitmapButton,
     .place = {96, 250, 50, 18},
     .text = "Close",
     .name = "close",
     .style = zDefaultButton | zCancelButton,
     .more = staysMiddle},
    {.kind = zKind::bitmapButton,
     .place = {154, 250, 50, 18},
     .text = "Apply",
     .name = "apply",
     .more = staysMiddle},
    {.kind = zKind::bitmapButton,
     .place = {212, 250, 50, 18},
     .text = "Help",
     .name = "help",
     .more = staysMiddle},
    messageRow({6, 272, 288, 8}, {.down = 100, .wider = 100}),
};

constexpr zLayout dialogLayout{.id = 572,
                               .name = "statistics",
                               .caption = "Statistics",
                               .width = 300,
                               .height = 280,
                               .font = {zFontRow::normal},
                               .icon = statsIcon,
                               .rows = rows};

using MakePage = std::unique_ptr<StatsPage> (*)(const StatsSource& source);
template <class Page> std::unique_ptr<StatsPage> make(const StatsSource& source) {
    return std::make_unique<Page>(source);
}

constexpr struct {
    MakePage make;
    bool advanced;  // only with advanced settings
} pages[] = {
    {make<DStatsDlgSignallingPG>, false}, {make<DStatsDlgAAL5PG>, false}, {make<DStatsDlgLECPG>, false},
    {make<DStatsDlgLESPG>, true},         {make<DStatsDlgLECSPG>, true},  {make<DStatsDlgIP1577PG>, false},
};

}  // namespace

DStatsDlg::DStatsDlg(zWindow& parent)
    : zFormDialog(parent.application(), dialogLayout), channel_(openChannel(parent)), line_(board()) {
    auto& notebook = board().control<zNotebook>("pages");
    const StatsSource source{application(), notebook, channel_, static_cast<std::uint8_t>(currentAdapter),
                             linkLimit_};
    for (const auto& page : pages)
        if (!page.advanced || advSettings) pages_.push_back(page.make(source));
    current_ = pages_.front().get();
    fillPages();
    for (const auto& page : pages_) page->onRefreshed = [this] { showSilence(); };
    showSilence();
    notebook.onSelect = [this](int position) { selChangeTB(position); };
    auto& clear = board().control<zBitmapButton>("clear");
    clear.onClick = [this] { onOk(); };
    clear.onShiftClick = [this] { current_->undoClear(); };
    board().disable(board().control<zBitmapButton>("apply"), "Statistics have nothing to apply");
    board().disable(board().control<zBitmapButton>("help"), "F1 opens the manual");
    board().control<zBitmapButton>("close").onClick = [this] { onCancel(); };
    onClose = [this] { onCancel(); };
    onKey(ratesKey, [this] { current_->showRates(!current_->showsRates()); });
    onKey(smoothKey, [this] {
        if (current_->showsRates()) current_->smoothRates(!current_->smoothsRates());
    });
    for (const char* keys : {plotKey, addKey, watchKey})
        onKey(keys, [this, keys] { watchFocused(application(), *current_, keys); });
    offerManual(*this);
    parent.setCursor(zArrowCursor);
    setTitle(("Statistics " + dlgTitle).substr(0, longestTitle));
    show();
    selChangeTB(0);
}

DriverChannel& DStatsDlg::openChannel(zWindow& parent) {
    parent.setCursor(zWatchCursor);
    return openedForQueries(own_);
}

void DStatsDlg::fillPages() {
    const auto end = StatsPage::Clock::now() + fillTime;
    for (const auto& page : pages_) {
        if (channel_.silentSince() || StatsPage::Clock::now() >= end) return;
        page->fill(end);
    }
}

void DStatsDlg::showSilence() {
    const std::time_t since = channel_.silentSince();
    if ((since != 0) == (silentSince_ != 0)) return;
    silentSince_ = since;
    std::string text;
    if (since) {
        for (const auto& page : pages_) page->grey();
        std::tm local{};
        localtime_r(&since, &local);
        text = fmt::format("No answer since {:02}:{:02}:{:02}", local.tm_hour, local.tm_min, local.tm_sec);
    }
    line_.setProgress(text);
}

void DStatsDlg::selChangeTB(int position) {
    current_->disableTimer();
    current_ = pages_[asIndex(position)].get();
    current_->enableTimer();
}

int DStatsDlg::onOk() {
    current_->ClearStats();
    return 1;
}

int DStatsDlg::onCancel() {
    if (const auto closed = onClosed) closed();  // the end of this object
    return 0;
}
