#include "ui/manual.h"

#include "resources/pictureids.h"
#include "toolkit/controls/button.h"
#include "toolkit/controls/textview.h"

#include <algorithm>
#include <fmt/format.h>
#include <iterator>

extern const char* const manualText;

namespace {

// By the layout's name of a window: the heading of its part.
constexpr struct {
    std::string_view layout, heading;
} parts[] = {
    {"main", "MAIN WINDOW"},
    {"setup", "SETUP"},
    {"lecPvc", "PVC SETTINGS"},
    {"ipPvc", "PVC SETTINGS"},
    {"elanClient", "ADD ELAN CLIENT"},
    {"moveClients", "INSERT ELAN CLIENTS"},
    {"statistics", "STATISTICS"},
    {"find", "STATISTICS"},
    {"global", "GLOBAL SETTINGS"},
    {"fonts", "TABLE FONT"},
    {"watchFor", "WATCHED CONDITIONS"},
    {"watchChoice", "WATCHED CONDITIONS"},
    {"watchedConditions", "WATCHED CONDITIONS"},
    {"plot", "PLOTS"},
};

enum ManualControl { manualTV = 810, manualCloseBTN = 811 };

constexpr zControlRow rows[] = {
    {.id = manualTV, .kind = zKind::textView, .place = {4, 4, 292, 194}},
    {.id = manualCloseBTN,
     .kind = zKind::bitmapButton,
     .place = {125, 204, 50, 18},
     .text = "Close",
     .picture = closeBitmap,
     .style = zDefaultButton | zCancelButton},
};

constexpr zLayout frame{.id = 0,
                        .name = "manual",
                        .caption = "Tarvolin Manual",
                        .width = 300,
                        .height = 229,
                        .font = {zFontRow::normal},
                        .icon = programIcon,
                        .rows = rows};

class DManualDlg : public zFormDialog {
  public:
    explicit DManualDlg(zFormDialog& opener) : zFormDialog(opener, frame, zModality::modeless) {
        control<zTextView>(manualTV).setText(std::string(manualPart(opener.name())));
        control<zBitmapButton>(manualCloseBTN).onClick = onClose = [&opener] { opener.closeBeside(); };
    }
};

}  // namespace

std::string_view manualPart(std::string_view layout) {
    const auto* const part = std::find_if(std::begin(parts), std::end(parts),
                                          [&](const auto& row) { return row.layout == layout; });
    if (part == std::end(parts)) return {};
    const std::string_view text = manualText;
    const std::size_t from = text.find(fmt::format("\n{}\n", part->heading)) + 1;
    if (from == 0) return {};
    // Up to the next line that begins at the edge.
    std::size_t end = text.find('\n', from);
    while (end + 1 < text.size() && (text[end + 1] == ' ' || text[end + 1] == '\n'))
        end = text.find('\n', end + 1);
    return text.substr(from, end - from);
}

void offerManual(zFormDialog& window) {
    window.onHelp([&window] { window.openBeside(std::make_unique<DManualDlg>(window)); });
}
