#include "ui/global/fontdlg.h"

#include "toolkit/fonts.h"
#include "toolkit/listbox.h"

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
};

constexpr zLayout frame{.id = 0,
                        .name = "fonts",
                        .caption = "Table Font",
                        .width = 190,
                        .height = 185,
                        .font = {zFontRow::normal},
                        .icon = globalIcon,
                        .rows = rows};

constexpr const char* sizes[] = {"8", "9", "10", "11", "12", "14", "16", "18", "20", "24"};  // points
constexpr const char* usualFont = "Liberation Sans:size=10";
constexpr const char* sampleLabels[] = {"MAC Address", "VPI/VCI"};
constexpr const char* sampleTexts[] = {"00:a0:3e:00:00:01", "0 / 1023"};

// Characters with a meaning in patterns have a backslash before them.
std::string escaped(const std::string& family) {
    std::string text;
    for (const char c : family) {
        if (std::string_view("\\-:,").find(c) != std::string_view::npos) text += '\\';
        text += c;
    }
    return text;
}

template <class List> int positionIn(const List& list, const std::string& text) {
    const auto found = std::find(std::begin(list), std::end(list), text);
    return found == std::end(list) ? 0 : static_cast<int>(found - std::begin(list));
}

}  // namespace

DFontDlg::DFontDlg(zWindow& parent, const std::string& font)
    : SubDialog(parent, frame), families_(zFontFamilies()) {
    auto &family = control<zListBox>(familyLB), &size = control<zListBox>(sizeLB);
    family.setLines(families_);
    size.setLines({std::begin(sizes), std::end(sizes)});
    const std::string chosen = font.empty() ? usualFont : font;
    const std::size_t cut = chosen.rfind(":size=");
    for (int i = 0; i < family.count(); ++i)
        if (escaped(family.line(i)) == chosen.substr(0, cut)) family.select(i);
    size.select(cut == std::string::npos ? 0 : positionIn(sizes, chosen.substr(cut + 6)));

    auto& sample = control<zTable>(sampleTBL);
    sample.resize(2, 1);
    for (const int column : {1, 2}) {
        sample.setText({column, 0}, sampleLabels[column - 1]);
        sample.setText({column, 1}, sampleTexts[column - 1]);
    }
    showSample();
    family.onSelect = size.onSelect = [this] { showSample(); };
}

std::string DFontDlg::font() const {
    const auto chosen = [this](int id) {
        const auto& list = control<zListBox>(id);
        return list.line(std::max(0, list.selected()));
    };
    return escaped(chosen(familyLB)) + ":size=" + chosen(sizeLB);
}

void DFontDlg::showSample() {
    constexpr int margin = 8;
    auto& sample = control<zTable>(sampleTBL);
    sample.setFont(font());
    for (const int column : {1, 2})
        sample.setColumnWidth(column, margin + std::max(sample.textWidth(sampleLabels[column - 1]),
                                                        sample.textWidth(sampleTexts[column - 1])));
}
