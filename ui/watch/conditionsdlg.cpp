#include "ui/watch/conditionsdlg.h"

#include "model/settings.h"
#include "resources/pictureids.h"
#include "toolkit/controls/button.h"
#include "ui/copymenu.h"
#include "ui/manual.h"
#include "ui/savetable.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>
#include <iterator>

namespace {

enum ConditionsControl { conditionsTBL = 830, seenBTN, removeBTN, conditionsCloseBTN };

constexpr zMore staysMiddle{.right = 50, .down = 100};

constexpr zControlRow button(int id, int x, const char* text, const char* tooltip, int picture,
                             unsigned style) {
    return {.id = id,
            .kind = zKind::bitmapButton,
            .place = {x, 122, 54, 18},
            .text = text,
            .tooltip = tooltip,
            .picture = picture,
            .style = style,
            .more = staysMiddle};
}

constexpr zControlRow rows[] = {
    {.id = conditionsTBL,
     .kind = zKind::table,
     .place = {6, 6, 288, 110},
     .more = {.wider = 100, .higher = 100}},
    button(seenBTN, 61, "Seen", "Titles and icons no longer call for attention", okBitmap, zPlain),
    button(removeBTN, 123, "Remove", "Stop watching for the selected condition", deleteBitmap, zPlain),
    button(conditionsCloseBTN, 185, "Close", nullptr, closeBitmap, zDefaultButton | zCancelButton),
};

constexpr zLayout frame{.id = 0,
                        .name = "watchedConditions",
                        .caption = "Watched Conditions",
                        .width = 300,
                        .height = 148,
                        .font = {zFontRow::normal},
                        .icon = statsIcon,
                        .rows = rows};

constexpr const char* labels[] = {"State", "Value", "Condition", "Now"};
constexpr int columns = std::size(labels);

std::string timeText(std::time_t time) {
    std::tm local{};
    localtime_r(&time, &local);
    return fmt::format("{:02}:{:02}:{:02}", local.tm_hour, local.tm_min, local.tm_sec);
}

std::string stateText(const Conditions::Waiting& waiting) {
    const metrics::Condition& condition = waiting.condition;
    if (condition.raised())
        return fmt::format("{}raised {}", waiting.seen ? "" : "(!) ", timeText(waiting.raisedAt));
    if (!condition.met()) return "unknown";
    if (*condition.met()) return fmt::format("met for {} s", condition.lasted().count());
    return waiting.overAt != 0 ? "over " + timeText(waiting.overAt) : "waiting";
}

std::array<std::string, columns> textsOf(const Conditions::Waiting& waiting) {
    const metrics::Subject& subject = waiting.condition.subject();
    const metrics::Criterion& criterion = waiting.condition.criterion();
    std::string condition = textOf(subject, criterion);
    if (criterion.hold.count() > 0) condition += " for " + metrics::textOf(criterion.hold);
    return {stateText(waiting), nameOf(subject), std::move(condition),
            textOf(subject, waiting.value->last())};
}

}  // namespace

DConditionsDlg::DConditionsDlg(Conditions& conditions, zApplication& application)
    : zFormDialog(application, frame), conditions_(conditions), table_(control<zTable>(conditionsTBL)) {
    table_.setFont(tblFontSpec);
    table_.setColumnWidth(0, 0);
    control<zBitmapButton>(seenBTN).onClick = [this] { conditions_.haveSeen(); };
    control<zBitmapButton>(removeBTN).onClick = [this] { clickedRemoveBTN(); };
    control<zBitmapButton>(conditionsCloseBTN).onClick = onClose = [this] { conditions_.closeList(); };
    table_.setMenu([this] {
        zMenuRows menu = copyMenu(table_);
        menu.push_back(saveTableRow(this->application(), table_));
        return menu;
    });
    offerManual(*this);
    listener_ = conditions_.listen([this] { fill(); });
    fill();
}

void DConditionsDlg::fill() {
    const std::vector<Conditions::Waiting>& all = conditions_.all();
    table_.resize(columns, static_cast<int>(all.size()));
    std::array<std::string, columns> widest;
    const auto write = [&](int column, int row, const std::string& text) {
        table_.setText({column, row}, text);
        std::string& most = widest[asIndex(column - 1)];
        if (table_.textWidth(text) > table_.textWidth(most)) most = text;
    };
    for (int column = 1; column <= columns; ++column) write(column, 0, labels[column - 1]);
    for (int row = 1; const Conditions::Waiting& waiting : all) {
        const auto texts = textsOf(waiting);
        for (int column = 1; column <= columns; ++column) write(column, row, texts[asIndex(column - 1)]);
        ++row;
    }
    for (int column = 1; column <= columns; ++column)
        table_.fitColumn(column, {labels[column - 1], widest[asIndex(column - 1)]});
    if (table_.activeCell().row == 0 && !all.empty()) table_.setActiveCell({1, 1});
    control<zBitmapButton>(seenBTN).enable(!conditions_.news({}).empty());
    control<zBitmapButton>(removeBTN).enable(!all.empty());
}

void DConditionsDlg::clickedRemoveBTN() {
    const int row = table_.activeCell().row;
    if (row > 0) conditions_.remove(asIndex(row - 1));
}
