#include "toolkit/display/colours.h"

#include "toolkit/display/database.h"

#include <fmt/format.h>
#include <optional>
#include <string>

namespace {

// A colour of the resources, and what stands in its place on a dark background: so many hundredths of another
// colour in it. Without another one it is the foreground.
constexpr struct {
    const char *specifier, *name, *classes;  // of the resource, and of one that it is meant for
    const char* light;
    const char* other;
    int hundredths;
} rows[] = {
    {"*XmTextField.background", "a.b.background", "A.XmTextField.Background", "#ffffff", nullptr, 10},
    {"*XmText.background", "a.b.background", "A.XmText.Background", "#ffffff", nullptr, 10},
    {"*XmComboBox*List.background", "a.b.List.background", "A.XmComboBox.XmList.Background", "#ffffff",
     nullptr, 10},
    {"*cells.background", "a.cells.background", "A.XmDrawingArea.Background", "#ffffff", nullptr, 10},
    {"*cells.gridColor", "a.cells.gridColor", "A.XmDrawingArea.GridColor", "#c0c0c0", nullptr, 30},
    {"*cells.selectColor", "a.cells.selectColor", "A.XmDrawingArea.SelectColor", "#9cb8dc", "#9cb8dc", 35},
    {"*XmList.selectColor", "a.b.selectColor", "A.XmList.SelectColor", "#9cb8dc", "#9cb8dc", 35},
    {"*TipLabel.background", "a.TipLabel.background", "A.XmLabel.Background", "#ffffe1", "#ffffe1", 20},
    {"*highlightColor", "a.highlightColor", "A.HighlightColor", "#303030", nullptr, 80},
};

std::optional<XColor> colourOf(Display* display, const std::string& text) {
    XColor rgb{};
    const Colormap colours = DefaultColormap(display, DefaultScreen(display));
    if (!XParseColor(display, colours, text.c_str(), &rgb)) return {};
    return rgb;
}

// As the eye weighs them.
int brightness(const XColor& rgb) {
    return (rgb.red * 3 + rgb.green * 6 + rgb.blue) / 10;
}

std::string mixed(const XColor& ground, const XColor& other, int hundredths) {
    const auto part = [&](int a, int b) { return ((a * (100 - hundredths) + b * hundredths) / 100) >> 8; };
    return fmt::format("#{:02x}{:02x}{:02x}", part(ground.red, other.red), part(ground.green, other.green),
                       part(ground.blue, other.blue));
}

}  // namespace

void zFollowColours(Display* display) {
    zDatabase resources(display);
    const auto background = colourOf(display, resources.value("a.background", "A.Background"));
    const auto foreground = colourOf(display, resources.value("a.foreground", "A.Foreground"));
    if (!background || !foreground || brightness(*foreground) <= brightness(*background)) return;
    for (const auto& row : rows) {
        if (resources.value(row.name, row.classes) != row.light) continue;  // the user has chosen it
        const auto other = row.other ? colourOf(display, row.other) : foreground;
        if (other) resources.put(row.specifier, mixed(*background, *other, row.hundredths));
    }
}
