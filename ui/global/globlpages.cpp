#include "ui/global/globlpages.h"

#include "model/settings.h"
#include "toolkit/controls/button.h"
#include "toolkit/controls/dropdown.h"
#include "ui/global/fontdlg.h"
#include "ui/global/globlids.h"

#include <algorithm>
#include <iterator>
#include <string>

namespace {

constexpr const char* refreshRates[] = {"250", "500", "1000", "1500", "2000", "4000"};  // milliseconds

constexpr zControlRow applicationRows[] = {
    {.id = globalGB, .kind = zKind::groupBox, .place = {10, 6, 159, 67}, .text = "Tarvolin Settings"},
    {.kind = zKind::staticText,
     .place = {18, 21, 80, 8},
     .text = "Stat Refresh Rate (ms):",
     .name = "rateLabel"},
    {.id = refreshRateCBO,
     .kind = zKind::dropDown,
     .place = {116, 20, 48, 54},
     .tooltip = "Sets data refresh rate in milliseconds",
     .items = refreshRates},
    {.kind = zKind::staticText,
     .place = {18, 39, 92, 8},
     .text = "Enable Advanced Settings:",
     .name = "advancedLabel"},
    {.id = advancedCB,
     .kind = zKind::checkBox,
     .place = {116, 38, 19, 13},
     .tooltip = "Enables LES/LECS tabs"},
    {.kind = zKind::staticText, .place = {18, 57, 56, 8}, .text = "Set Table Font:", .name = "fontLabel"},
    {.id = fontBTN, .kind = zKind::bitmapButton, .place = {116, 55, 32, 12}, .text = "Fonts"},
};

constexpr zControlRow connectionRows[] = {
    {.id = globalGB, .kind = zKind::groupBox, .place = {34, 8, 115, 62}, .text = "Global Connections"},
    {.kind = zKind::staticText, .place = {40, 21, 33, 8}, .text = "Pt-to-Pt:", .name = "ptToPtLabel"},
    {.id = ptToPtED, .kind = zKind::edit, .place = {111, 19, 32, 12}, .style = zReadOnly},
    {.kind = zKind::staticText, .place = {40, 36, 37, 8}, .text = "Pt-to-Mpt:", .name = "ptToMptLabel"},
    {.id = ptToMptED, .kind = zKind::edit, .place = {111, 35, 32, 12}, .style = zReadOnly},
    {.kind = zKind::staticText,
     .place = {40, 52, 69, 8},
     .text = "End Pts on a Pt-Mpt:",
     .name = "endPtsLabel"},
    {.id = endPtsED, .kind = zKind::edit, .place = {111, 51, 32, 12}, .style = zReadOnly},
};

constexpr zControlRow debuggingRows[] = {
    {.kind = zKind::groupBox, .place = {58, 11, 74, 58}, .text = "Enable Debugging", .name = "debugging"},
    {.id = apiCB, .kind = zKind::checkBox, .place = {74, 24, 31, 10}, .text = "API"},
    {.id = signalingCB, .kind = zKind::checkBox, .place = {74, 38, 51, 10}, .text = "Signalling"},
    {.id = ilmiCB, .kind = zKind::checkBox, .place = {74, 53, 34, 10}, .text = "ILMI"},
};

constexpr zLayout page(int id, const char* name, const char* caption, std::span<const zControlRow> rows) {
    return {.id = id,
            .name = name,
            .caption = caption,
            .width = 200,
            .height = 100,
            .font = {zFontRow::normal},
            .rows = rows};
}
constexpr zLayout application = page(580, "applicationPage", "Application", applicationRows);
constexpr zLayout connections = page(578, "connectionsPage", "Connections", connectionRows);
constexpr zLayout debugging = page(579, "debuggingPage", "Debugging", debuggingRows);

// The first position if the period is not in the list.
int positionOf(int milliseconds) {
    const auto* const found =
        std::find(std::begin(refreshRates), std::end(refreshRates), std::to_string(milliseconds));
    return found == std::end(refreshRates) ? 0 : static_cast<int>(found - refreshRates);
}

}  // namespace

DGlobalDlgAppPG::DGlobalDlgAppPG(zWindow& dialog, zNotebook& notebook)
    : dialog_(dialog), board_(notebook.addPage(application)), rate_(positionOf(timerTime)) {
    board_.control<zDropDown>(refreshRateCBO).bind(&rate_);
    board_.control<zCheckBox>(advancedCB).bind(&advSettings);
    board_.load();
    board_.control<zBitmapButton>(fontBTN).onClick = [this] { clickedFontBTN(); };
}

void DGlobalDlgAppPG::StoreDefaults() {
    const int shown = rate_;
    board_.store();
    if (rate_ != shown) timerTime = std::stoi(refreshRates[rate_]);
}

void DGlobalDlgAppPG::clickedFontBTN() {
    DFontDlg chooser(dialog_, tblFontSpec);
    chooser.runModal();
    if (chooser.okFlag()) tblFontSpec = chooser.font();
}

DGlobalDlgConnectPG::DGlobalDlgConnectPG(zNotebook& notebook) {
    notebook.addPage(connections);
}

DGlobalDlgDebugPG::DGlobalDlgDebugPG(zNotebook& notebook) : board_(notebook.addPage(debugging)) {
    board_.control<zCheckBox>(apiCB).bind(&ApiDbgCB);
    board_.control<zCheckBox>(signalingCB).bind(&SignalingDbgCB);
    board_.control<zCheckBox>(ilmiCB).bind(&IlmiDbgCB);
    board_.load();
    board_.control<zCheckBox>(apiCB).onClick = [this] { clickedApiCB(); };
    board_.control<zCheckBox>(signalingCB).onClick = [this] { clickedSignalingCB(); };
    board_.control<zCheckBox>(ilmiCB).onClick = [this] { clickedIlmiCB(); };
}

void DGlobalDlgDebugPG::StoreDefaults() {
    board_.store();
}
