#include "ui/global/fontdlg.h"

#include "toolkit/controls/listbox.h"

#include <algorithm>
#include <iterator>

namespace {

enum FontControl { familyLB = 800, sizeLB = 801, sampleTBL = 802 };

constexpr zControlRow rows[] = {
    {.kind = zKind::staticText, .place = {10, 6, 60, 8}, .text = "Font:", .name = "familyLabel"},
    {.id = familyLB, .kind = zKind::listBox, .place = {10, 17, 120, 80}},
    {.kind = zKind::staticText, .place = {138, 6, 40, 8}, .text = "Size:", .name = "sizeLabel"},
    {.id = sizeLB, .kind = zKind::listBox, .place = {138, 17, 42, 80}},
    {.kind = zKind::staticText, .place = {10, 102, 60, 8}, .text = "Sample:", .name = "sampleLabel"},
    {.id = sampleTBL, .kind = zKind::table, .place = {10, 113, 170, 38}},
    okRow({41, 160, 50, 18}),
    cancelRow({99, 160, 50, 18}),
    messageRow({6, 184, 178, 8}),
};

constexpr zLayout frame{.id = 0,
                        .name = "fonts",
                        .caption = "Table Font",
                        .width = 190,
                        .height = 194,
                        .icon = globalIcon,
                        .rows = rows};

constexpr int sizes[] = {8, 9, 10, 11, 12, 14, 16, 18, 20, 24};  // points
constexpr const char* sampleLabels[] = {"MAC Address", "VPI/VCI"};
constexpr const char* sampleTexts[] = {"00:a0:3e:00:00:01", "0 / 1023"};

}  // namespace

DFontDlg::DFontDlg(zWindow& parent, const std::string& font) : SubDialog(parent, frame), font_(font) {
    auto& sample = control<zTable>(sampleTBL);
    sample.resize(2, 1);
    for (const int column : {1, 2}) {
        sample.setText({column, 0}, sampleLabels[column - 1]);
        sample.setText({column, 1}, sampleTexts[column - 1]);
    }
    showSample();

    // The current font of the tables is selected, if the lists have it.
    auto &family = control<zListBox>(familyLB), &size = control<zListBox>(sizeLB);
    shown_ = sample.font();
    const std::vector<std::string> families = zFontFamilies();
    family.setLines(families);
    if (const auto at = std::ranges::find(families, shown_.family); at != families.end())
        family.select(static_cast<int>(at - families.begin()));
    std::vector<std::string> lines;
    for (const int points : sizes) lines.push_back(std::to_string(points));
    size.setLines(lines);
    if (const auto at = std::ranges::find(sizes, shown_.size); at != std::end(sizes))
        size.select(static_cast<int>(at - std::begin(sizes)));
    family.onSelect = size.onSelect = [this] { choose(); };
}

void DFontDlg::choose() {
    const auto &family = control<zListBox>(familyLB), &size = control<zListBox>(sizeLB);
    if (family.selected() >= 0) shown_.family = family.line(family.selected());
    if (size.selected() >= 0) shown_.size = sizes[size.selected()];
    font_ = shown_.pattern();
    showSample();
}

void DFontDlg::showSample() {
    auto& sample = control<zTable>(sampleTBL);
    sample.setFont(font_);
    for (const int column : {1, 2})
        sample.fitColumn(column, {sampleLabels[column - 1], sampleTexts[column - 1]});
}
