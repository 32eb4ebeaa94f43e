#include "ui/plot/plotdlg.h"

#include "platform/index.h"
#include "toolkit/controls/button.h"
#include "ui/manual.h"
#include "ui/plot/plotlayout.h"
#include "ui/plot/saveplot.h"

#include <algorithm>
#include <ctime>

using namespace std::chrono;

// What can be done with a plot: the row of the menu, and its keys.
struct DPlotDlg::Command {
    const char *label, *keys;  // as the menu shows them
    zPlotKey key, other;       // other: the same on another key, if it has a name
    void (*run)(DPlotDlg& self);
    bool (*possible)(const zPlotPicture& picture) = [](const zPlotPicture& p) { return !p.shown().empty(); };
};

namespace {

constexpr int farColumns = 10;
constexpr auto always = [](const zPlotPicture&) { return true; };
constexpr zPlotKey none;

// Local time is a moment of the steady clock plus this; until the zone's rules change the offset.
zPlotTime localOffset() {
    const auto wall = system_clock::now();
    const auto steady = steady_clock::now();
    const std::time_t seconds = system_clock::to_time_t(wall);
    std::tm local{};
    localtime_r(&seconds, &local);
    return floor<milliseconds>(wall.time_since_epoch() - steady.time_since_epoch()) +
           std::chrono::seconds(local.tm_gmtoff);
}

}  // namespace

const DPlotDlg::Command DPlotDlg::commands[] = {
    {"1 Minute", "1", {"1"}, {"KP_1"}, [](DPlotDlg& d) { d.span(1min); }, always},
    {"10 Minutes", "2", {"2"}, {"KP_2"}, [](DPlotDlg& d) { d.span(10min); }, always},
    {"1 Hour", "3", {"3"}, {"KP_3"}, [](DPlotDlg& d) { d.span(1h); }, always},
    {"24 Hours", "4", {"4"}, {"KP_4"}, [](DPlotDlg& d) { d.span(24h); }, always},
    {"Hold or Go On", "Space", {"space"}, none, [](DPlotDlg& d) { d.hold(); }},
    {"Back", "Page Up", {"Prior"}, {"Left", true}, [](DPlotDlg& d) { d.scroll(-1); }},
    {"Forward",
     "Page Down",
     {"Next"},
     {"Right", true},
     [](DPlotDlg& d) { d.scroll(1); },
     [](const zPlotPicture& p) { return p.isHeld(); }},
    {"To the Beginning", "Home", {"Home"}, none, [](DPlotDlg& d) { d.toOldest(); }},
    {"To Now",
     "End",
     {"End"},
     none,
     [](DPlotDlg& d) { d.toNow(); },
     [](const zPlotPicture& p) { return p.isHeld(); }},
    {"Cursor Left", "Left", {"Left"}, none, [](DPlotDlg& d) { d.moveCursor(-1); }},
    {"Cursor Right", "Right", {"Right"}, none, [](DPlotDlg& d) { d.moveCursor(1); }},
    {"Cursor Far Left",
     "Ctrl+Left",
     {"Left", false, true},
     none,
     [](DPlotDlg& d) { d.moveCursor(-farColumns); }},
    {"Cursor Far Right",
     "Ctrl+Right",
     {"Right", false, true},
     none,
     [](DPlotDlg& d) { d.moveCursor(farColumns); }},
    {"Hide Cursor",
     "C",
     {"c"},
     none,
     [](DPlotDlg& d) { d.hideCursor(); },
     [](const zPlotPicture& p) { return p.cursor().has_value(); }},
    {"Select Upper", "Up", {"Up"}, none, [](DPlotDlg& d) { d.select(-1); }},
    {"Select Lower", "Down", {"Down"}, none, [](DPlotDlg& d) { d.select(1); }},
    {"Fix Scale, Larger", "+", {"plus"}, {"KP_Add"}, [](DPlotDlg& d) { d.fixScale(true); }},
    {"Fix Scale, Smaller", "-", {"minus"}, {"KP_Subtract"}, [](DPlotDlg& d) { d.fixScale(false); }},
    {"Scale Follows Values",
     "A",
     {"a"},
     none,
     [](DPlotDlg& d) { d.releaseScale(); },
     [](const zPlotPicture& p) {
         return !p.shown().empty() && p.scaleOf(p.shown()[p.selected()]).isFixed();
     }},
    {"Remove Selected", "Delete", {"Delete"}, {"KP_Delete"}, [](DPlotDlg& d) { d.remove(); }},
    {"Save Plot...", "Ctrl+S", {"s", false, true}, none, [](DPlotDlg& d) { d.save(); }},
    {"Close", "Ctrl+W", {"w", false, true}, none, [](DPlotDlg& d) { d.close(); }, always},
};

DPlotDlg::DPlotDlg(zApplication& application, std::string adapter)
    : zFormDialog(application, plotLayout), adapter_(std::move(adapter)), plot_(control<zPlot>(plotPLT)) {
    plot_.onKey = [this](const zPlotKey& key) { pressed(key); };
    plot_.setMenu([this] { return menu(); });
    control<zBitmapButton>(plotSaveBTN).onClick = [this] { save(); };
    control<zBitmapButton>(plotCloseBTN).onClick = onClose = [this] { close(); };
    showTitle();
    offerManual(*this);
}

bool DPlotDlg::add(const PlotLine& line) {
    if (!canAdd(line.name)) return false;
    plot_.change([&](zPlotPicture& picture) { picture.add(plotSeriesOf(line)); });
    showTitle();
    return true;
}

// Names the first value, so that plots can be told apart in a list of windows.
void DPlotDlg::showTitle() {
    const auto& shown = plot_.picture().shown();
    setTitle("Plot of " + adapter_ + (shown.empty() ? "" : ": " + shown.front().series.name));
}

bool DPlotDlg::canAdd(std::string_view name) const {
    const auto& shown = plot_.picture().shown();
    return shown.size() < zPlotLook::lines &&
           std::ranges::none_of(shown, [&](const auto& each) { return each.series.name == name; });
}

void DPlotDlg::tick(metrics::Moment now) {
    // The wall clock may have been set.
    constexpr auto often = 10s;
    constexpr milliseconds setBy = 2s;
    if (now - looked_ >= often) {
        looked_ = now;
        const zPlotTime offset = localOffset(), before = plot_.picture().local(zPlotTime(0));
        if (abs(offset - before) > setBy)
            plot_.change([&](zPlotPicture& picture) { picture.setLocalOffset(offset); });
    }
    plot_.tick(plotTimeOf(now));
}

void DPlotDlg::pressed(const zPlotKey& key) {
    const auto is = [&](const zPlotKey& other) {
        if (other.name.empty() || key.control != other.control) return false;
        // Shift belongs to the signs that need it.
        return key.name == other.name &&
               (key.shift == other.shift || other.name.size() == 1 || other.name == "plus");
    };
    for (const Command& command : commands) {
        if (!is(command.key) && !is(command.other)) continue;
        if (command.possible(plot_.picture())) command.run(*this);
        return;  // the window may be gone
    }
}

zMenuRows DPlotDlg::menu() {
    zMenuRows rows;
    for (const Command& command : commands)
        rows.push_back({.label = command.label,
                        .action = [this, &command] { command.run(*this); },
                        .enabled = command.possible(plot_.picture()),
                        .keys = command.keys});
    return rows;
}

void DPlotDlg::span(zPlotTime span) {
    plot_.change([&](zPlotPicture& picture) { picture.setSpan(span); });
}

void DPlotDlg::scroll(int halves) {
    plot_.change([&](zPlotPicture& picture) { picture.scroll(picture.span() / 2 * halves); });
}

void DPlotDlg::toOldest() {
    plot_.change([](zPlotPicture& picture) { picture.showBeginning(); });
}

void DPlotDlg::toNow() {
    plot_.change([](zPlotPicture& picture) { picture.showNow(); });
}

void DPlotDlg::hold() {
    plot_.change([](zPlotPicture& picture) { picture.isHeld() ? picture.showNow() : picture.hold(); });
}

void DPlotDlg::moveCursor(int columns) {
    plot_.change([&](zPlotPicture& picture) {
        const auto& any = picture.shown().front().columns;
        picture.setCursor(picture.cursor() ? *picture.cursor() + columns : any.last());
    });
}

void DPlotDlg::hideCursor() {
    plot_.change([](zPlotPicture& picture) { picture.setCursor({}); });
}

void DPlotDlg::select(int down) {
    plot_.change([&](zPlotPicture& picture) {
        const int next = static_cast<int>(picture.selected()) + down;
        picture.select(asIndex(std::clamp(next, 0, static_cast<int>(picture.shown().size()) - 1)));
    });
}

void DPlotDlg::fixScale(bool larger) {
    plot_.change([&](zPlotPicture& picture) { picture.fixScale(larger); });
}

void DPlotDlg::releaseScale() {
    plot_.change([](zPlotPicture& picture) { picture.releaseScale(); });
}

void DPlotDlg::remove() {
    plot_.change([](zPlotPicture& picture) { picture.remove(picture.selected()); });
    showTitle();
}

void DPlotDlg::save() {
    savePlot(*this, plot_, adapter_);
}

void DPlotDlg::close() {
    if (const auto closed = onClosed) closed();  // the end of this object
}
