#include "ui/watch/watchdlg.h"

#include "model/settings.h"
#include "platform/number.h"
#include "resources/pictureids.h"
#include "toolkit/controls/button.h"
#include "toolkit/controls/dropdown.h"
#include "toolkit/controls/edit.h"
#include "toolkit/controls/listbox.h"
#include "toolkit/controls/statics.h"
#include "ui/fieldmasks.h"
#include "ui/manual.h"
#include "ui/subdialog.h"

#include <array>
#include <cmath>
#include <fmt/format.h>

using metrics::Comparison;
using metrics::Criterion;
using metrics::Kind;

namespace {

enum WatchControl { valueED = 820, meaningED, nowED, testCBO, numberED, stateLB, holdED };

constexpr int left = 8, field = 52, width = 300, fieldWidth = width - field - left;
constexpr std::chrono::seconds usualHold{10};

constexpr zControlRow label(int y, const char* text, const char* name) {
    return {.place = {left, y + 2, field - left, 8}, .text = text, .name = name};
}
constexpr zControlRow shownRow(int id, int y) {
    return {.id = id, .kind = zKind::edit, .place = {field, y, fieldWidth, 12}, .style = zReadOnly};
}
constexpr zControlRow testRow(std::span<const char* const> tests) {
    return {.id = testCBO, .kind = zKind::dropDown, .place = {field, 52, 48, 44}, .items = tests};
}

// The rows of the form for one kind of value, which end at `end`, with those that all forms have.
template <std::size_t own> constexpr auto withCommonRows(const std::array<zControlRow, own>& rows, int end) {
    const zControlRow before[] = {label(52, "Watch for:", "testLabel")};
    const zControlRow after[] = {
        label(end + 6, "For:", "holdLabel"),
        {.id = holdED,
         .kind = zKind::numberEdit,
         .place = {field, end + 6, 32, 12},
         .tooltip = "How long it has to last, without a break, before it is reported",
         .mask = &fourDigitsField},
        {.place = {field + 38, end + 8, 150, 8}, .text = "seconds without a break", .name = "holdUnit"},
        okRow({96, end + 27, 50, 18}),
        cancelRow({154, end + 27, 50, 18}),
        label(8, "Value:", "valueLabel"),
        shownRow(valueED, 8),
        label(22, "Meaning:", "meaningLabel"),
        shownRow(meaningED, 22),
        label(36, "Now:", "nowLabel"),
        shownRow(nowED, 36),
        messageRow({6, end + 50, width - 12, 8}),
    };
    std::array<zControlRow, std::size(before) + own + std::size(after)> all{};
    auto* at = std::ranges::copy(before, all.begin()).out;
    at = std::ranges::copy(rows, at).out;
    std::ranges::copy(after, at);
    return all;
}

constexpr zLayout layoutOf(std::span<const zControlRow> rows, int end) {
    return {.id = 0,
            .name = "watchFor",
            .caption = "Watch for",
            .width = width,
            .height = end + 61,
            .font = {zFontRow::normal},
            .icon = statsIcon,
            .rows = rows};
}

constexpr const char *numberTests[] = {"above", "below"}, *stateTests[] = {"is", "is not"},
                     *flagTests[] = {"on", "off"};
constexpr int lineEnd = 64, listEnd = 128;

constexpr auto numberRows = withCommonRows(
    std::array{testRow(numberTests),
               zControlRow{.id = numberED, .kind = zKind::edit, .place = {field + 56, 53, 56, 12}},
               zControlRow{.place = {field + 118, 55, 90, 8}, .text = "", .name = "unit"}},
    lineEnd);
constexpr auto stateRows = withCommonRows(
    std::array{
        testRow(stateTests),
        zControlRow{.id = stateLB, .kind = zKind::listBox, .place = {field + 56, 52, fieldWidth - 56, 76}}},
    listEnd);
constexpr auto flagRows = withCommonRows(std::array{testRow(flagTests)}, lineEnd);

constexpr zLayout numberLayout = layoutOf(numberRows, lineEnd), stateLayout = layoutOf(stateRows, listEnd),
                  flagLayout = layoutOf(flagRows, lineEnd);

bool isFlag(Kind kind) {
    return kind == Kind::flag || kind == Kind::alarm;
}

const zLayout& layoutFor(Kind kind) {
    if (kind == Kind::state) return stateLayout;
    return isFlag(kind) ? flagLayout : numberLayout;
}

}  // namespace

DWatchDlg::DWatchDlg(Conditions& conditions, zApplication& application, const metrics::Subject& subject)
    : zFormDialog(application, layoutFor(subject.metric->kind)), conditions_(conditions), subject_(subject),
      line_(board()), watch_(AdapterWatch::of(application, subject.place.adapter)),
      value_(watch_->sampler().watch(subject)) {
    // The value is wanted now, and not only after the next tick.
    if (value_->moment() == metrics::Moment{}) watch_->sampler().tick(std::chrono::milliseconds(timerTime));
    control<zEdit>(valueED).setText(nameOf(subject));
    control<zEdit>(meaningED).setText(subject.metric->help);
    setDefaults();
    showValue();
    listener_ = watch_->listen([this] { showValue(); });
    line_.advise = [this](const zEdit*) {
        const std::string wrong = fault();
        return zMessageLine::Advice{.field = wrong, .page = wrong};
    };
    control<zBitmapButton>(subOkBTN).onClick = [this] { clickedOkBTN(); };
    control<zBitmapButton>(subCancelBTN).onClick = onClose = [this] { conditions_.closeAsking(); };
    offerManual(*this);
}

// What is worth a message most of the time: an alarm that comes, a state that is left, a flag that changes,
// anything that is counted at all.
void DWatchDlg::setDefaults() {
    const double* now = std::get_if<double>(&value_->last());
    const Kind kind = subject_.metric->kind;
    int test = 0;
    if (kind == Kind::state) {
        states_ = metrics::statesOf(*subject_.metric);
        std::vector<std::string> lines;
        int present = -1;
        for (const metrics::State& state : states_) {
            if (now && std::string_view(state.words) == textOf(subject_, *now))
                present = static_cast<int>(lines.size());
            lines.emplace_back(state.words);
        }
        auto& list = control<zListBox>(stateLB);
        list.setLines(std::move(lines));
        list.select(std::max(0, present));
        test = present >= 0 ? 1 : 0;
    } else if (isFlag(kind)) {
        test = kind == Kind::flag && now && *now != 0 ? 1 : 0;
    } else {
        control<zEdit>(numberED).setText(fmt::format("{:.0f}", now && !subject_.isRate() ? *now : 0));
        board().control<zStatic>("unit").setText(unitOf(subject_).c_str());
    }
    control<zDropDown>(testCBO).select(test);
    control<zNumberEdit>(holdED).setNumber(static_cast<unsigned>(usualHold.count()));
}

Criterion DWatchDlg::criterion() const {
    const int test = control<zDropDown>(testCBO).selected();
    Criterion criterion{.hold = std::chrono::seconds(control<zNumberEdit>(holdED).number())};
    if (subject_.metric->kind == Kind::state) {
        const int chosen = std::max(0, control<zListBox>(stateLB).selected());
        criterion.test = test == 0 ? Comparison::is : Comparison::isNot;
        criterion.operand = static_cast<double>(states_[asIndex(chosen)].code);
    } else if (isFlag(subject_.metric->kind)) {
        criterion.test = Comparison::is;
        criterion.operand = test == 0 ? 1 : 0;
    } else {
        criterion.test = test == 0 ? Comparison::above : Comparison::below;
        criterion.operand = threshold().value_or(0);
    }
    return criterion;
}

std::optional<double> DWatchDlg::threshold() const {
    const auto number = platform::number<double>(control<zEdit>(numberED).text());
    return number && *number >= 0 && std::isfinite(*number) ? number : std::nullopt;
}

std::string DWatchDlg::fault() const {
    if (std::chrono::seconds(control<zNumberEdit>(holdED).number()) > metrics::longestHold)
        return fmt::format("At most {} seconds.", metrics::longestHold.count());
    if (layoutFor(subject_.metric->kind).rows.data() == numberLayout.rows.data() && !threshold())
        return "A threshold is a number from 0 on, such as 1500 or 0.5.";
    return {};
}

void DWatchDlg::showValue() {
    control<zEdit>(nowED).setText(textOf(subject_, value_->last()));
}

void DWatchDlg::clickedOkBTN() {
    if (!fault().empty()) return line_.refresh();
    conditions_.add(subject_, criterion());
    conditions_.closeAsking();
}
