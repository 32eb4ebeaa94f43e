#include "toolkit/controls/fontsizes.h"

#include "toolkit/controls/dialogunits.h"
#include "toolkit/display/database.h"
#include "toolkit/display/fonts.h"

#include <X11/Xft/Xft.h>
#include <algorithm>
#include <charconv>
#include <fmt/format.h>
#include <optional>

namespace {

// Points. Smaller ones nobody reads, and with larger ones a window has more pixels than X can count.
constexpr int leastSize = 4, mostSize = 72;

constexpr int fieldHeight = 12;       // of the layouts, in dialog units
constexpr int leastFieldPixels = 11;  // letters of six pixels and the field's edges
constexpr int windowFrame = 24;       // pixels that a window manager takes

// What the resources have where the user has set nothing.
constexpr int usualSize = 12, listSize = 9, manualSize = 10, tableSize = 10;
constexpr const char *tableFont = "Liberation Sans:size=10", *smallerTableFont = "Liberation Sans:size={}";

std::optional<int> sizeOf(const std::string& text) {
    int size = 0;
    const char* end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, size);
    if (error != std::errc() || rest != end || size < leastSize || size > mostSize) return {};
    return size;
}

class Sizes {
  public:
    explicit Sizes(Display* display) : display_(display), resources_(display) {}

    std::vector<std::string> refused;

    // Of "plain", "bold", "small" or "fixed".
    std::string valueOf(const std::string& font, const char* attribute, const char* ofClass) const {
        return resources_.value(fmt::format("{}.{}", font, attribute), fmt::format("Rendition.{}", ofClass));
    }
    // The size of a font, or of any, if it is one.
    std::optional<int> read(const std::string& font) {
        const std::string text = valueOf(font, "fontSize", "FontSize");
        const auto size = sizeOf(text);
        if (!size && !text.empty())
            refused.push_back(
                fmt::format("font size \"{}\" ignored: {} to {} points", text, leastSize, mostSize));
        return size;
    }
    void put(const std::string& font, int size) {
        resources_.force(fmt::format("{}.fontSize", font), std::to_string(size));
    }
    // Tables have no larger font than dialogs.
    void shrinkTables(int size) {
        if (size < tableSize && resources_.value("cells.tableFont", "XmDrawingArea.TableFont") == tableFont)
            resources_.put("*cells.tableFont", fmt::format(fmt::runtime(smallerTableFont), size));
    }

    int fitting(const zRect& largest) const {
        int chosen = usualSize;
        for (int size = usualSize; size >= leastSize; --size) {
            const zDialogUnits units = unitsAt(size);
            if (units.y(fieldHeight) < leastFieldPixels) break;
            chosen = size;
            if (hasRoom(units.pixels(largest))) break;
        }
        return chosen;
    }

  private:
    zDialogUnits unitsAt(int size) const {
        const std::string pattern =
            zFont{valueOf("plain", "fontName", "FontName"), static_cast<double>(size)}.pattern() +
            ":style=" + valueOf("plain", "fontStyle", "FontStyle");
        XftFont* font = XftFontOpenName(display_, DefaultScreen(display_), pattern.c_str());
        if (!font) return {0, 0};
        XGlyphInfo extents{};
        const std::string_view alphabet = zDialogUnits::alphabet;
        XftTextExtents8(display_, font, reinterpret_cast<const FcChar8*>(alphabet.data()),
                        static_cast<int>(alphabet.size()), &extents);
        const zDialogUnits units = zDialogUnits::ofAlphabet(extents.xOff, font->ascent + font->descent);
        XftFontClose(display_, font);
        return units;
    }
    bool hasRoom(const zRect& dialog) const {
        const int screen = DefaultScreen(display_);
        return dialog.width <= DisplayWidth(display_, screen) &&
               dialog.height + windowFrame <= DisplayHeight(display_, screen);
    }

    Display* display_;
    zDatabase resources_;
};

}  // namespace

std::vector<std::string> zChooseFontSizes(Display* display, const zRect& largest) {
    Sizes sizes(display);
    const auto general = sizes.read("any"), plain = sizes.read("plain"), bold = sizes.read("bold"),
               small = sizes.read("small"), fixed = sizes.read("fixed");
    const bool chosen = general || plain.value_or(usualSize) != usualSize;
    const int size = chosen ? general.value_or(usualSize) : sizes.fitting(largest);
    if (plain.value_or(usualSize) == usualSize) sizes.put("plain", size);
    if (bold.value_or(usualSize) == usualSize) sizes.put("bold", size);
    if (small.value_or(listSize) == listSize) sizes.put("small", std::min(listSize, size));
    // A line of the manual has as many letters in any window.
    if (fixed.value_or(manualSize) == manualSize)
        sizes.put("fixed", std::max(leastSize, manualSize * size / usualSize));
    sizes.shrinkTables(size);
    return sizes.refused;
}
