#include "ui/finddialog.h"

#include "toolkit/controls/button.h"
#include "toolkit/controls/edit.h"
#include "toolkit/controls/statics.h"
#include "toolkit/table/table.h"
#include "toolkit/window/window.h"
#include "ui/manual.h"

#include <fmt/format.h>

namespace {

constexpr zControlRow rows[] = {
    {.place = {6, 8, 22, 10}, .text = "Find:", .name = "label"},
    {.kind = zKind::edit, .place = {30, 6, 164, 13}, .name = "text"},
    {.place = {6, 25, 188, 10}, .name = "result"},
    {.kind = zKind::bitmapButton,
     .place = {38, 40, 58, 18},
     .text = "Find Next",
     .name = "next",
     .style = zDefaultButton},
    {.kind = zKind::bitmapButton,
     .place = {104, 40, 58, 18},
     .text = "Close",
     .name = "close",
     .style = zCancelButton},
};

constexpr zLayout layout{
    .name = "find", .caption = "Find", .width = 200, .height = 64, .font = {zFontRow::normal}, .rows = rows};

std::string lastSought;

class FindDialog : public zFormDialog {
  public:
    FindDialog(zApplication& application, zTable& table, std::function<void()> close)
        : zFormDialog(application, table, layout), table_(table) {
        text().setText(lastSought);
        board().control<zBitmapButton>("next").onClick = [this] { find(); };
        board().control<zBitmapButton>("close").onClick = onClose = std::move(close);
        offerManual(*this);
    }

    void find() {
        lastSought = text().text();
        const bool found = lastSought.empty() || table_.find(lastSought);
        board().control<zStatic>("result").setText(
            found ? "" : fmt::format("No cell has \"{}\" in it.", lastSought).c_str());
    }

  private:
    zEdit& text() const { return board().control<zEdit>("text"); }

    zTable& table_;
};

class Finding {
  public:
    Finding(zApplication& application, zTable& table) : application_(application), table_(table) {}

    void open() {
        dialog_ = std::make_unique<FindDialog>(application_, table_, [this] { dialog_.reset(); });
        dialog_->show();
    }
    void next() {
        if (!lastSought.empty() && table_.find(lastSought)) return;
        open();
        dialog_->find();
    }

  private:
    zApplication& application_;
    zTable& table_;
    std::unique_ptr<FindDialog> dialog_;
};

}  // namespace

void offerFinding(zApplication& application, zTable& table) {
    const auto finding = std::make_shared<Finding>(application, table);
    table.onFind = [finding] { finding->open(); };
    table.onFindNext = [finding] { finding->next(); };
}
