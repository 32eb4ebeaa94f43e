#include "toolkit/controls/fontsizes.h"

#include "platform/safetext.h"
#include "toolkit/controls/dialogunits.h"
#include "toolkit/display/database.h"
#include "toolkit/display/fonts.h"

#include <X11/Xft/Xft.h>
#include <Xm/Xm.h>
#include <algorithm>
#include <charconv>
#include <fmt/format.h>
#include <optional>
#include <utility>

namespace {

// Points. Smaller ones nobody reads, and with larger ones a window has more pixels than X can count.
constexpr int leastSize = 4, mostSize = 72;

constexpr int fieldHeight = 12;       // of the layouts, in dialog units
constexpr int leastFieldPixels = 11;  // letters of six pixels and the field's edges
constexpr int windowFrame = 24;       // pixels that a window manager takes

// Where the user has set nothing.
constexpr int usualSize = 12, listSize = 9, manualSize = 10, tableSize = 10;

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
            refuse(fmt::format("font size \"{}\" ignored: {} to {} points", platform::escaped(text),
                               leastSize, mostSize));
        return size;
    }
    // The size that is set for this font, and not for all of them.
    std::optional<int> readOwn(const std::string& font) {
        const auto entry = [this](const std::string& of) {
            return resources_.entry(of + ".fontSize", "Rendition.FontSize");
        };
        return entry(font) == entry("any") ? std::nullopt : read(font);
    }
    void put(const std::string& font, std::optional<int> chosen, int size) {
        if (!chosen) resources_.force(fmt::format("{}.fontSize", font), std::to_string(size));
    }
    // The library would take a font of the server's in place of the one that is described, and crash in the
    // first field.
    void refuseServerFont(const std::string& font) {
        const std::string name = valueOf(font, "font", "Font");
        if (!name.empty())
            refuse(fmt::format("font \"{}\" ignored: set fontName and fontSize", platform::escaped(name)));
        resources_.withhold(font + ".font", XmRFontStruct);
    }
    // No text has a tab, and the library frees a list of them once too often.
    void hideTabStops(const std::string& of = "") { resources_.withhold(of + "tabList", XmRTabList); }
    // Tables have no larger font than dialogs.
    void putTables(int size) {
        if (resources_.value("cells.tableFont", "XmDrawingArea.TableFont").empty())
            resources_.put("*cells.tableFont",
                           fmt::format("Liberation Sans:size={}", std::min(size, tableSize)));
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
    void refuse(std::string line) {
        if (std::ranges::count(refused, line) == 0) refused.push_back(std::move(line));
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
               small = sizes.readOwn("small"), fixed = sizes.readOwn("fixed");
    sizes.hideTabStops();
    for (const std::string font : {"plain", "bold", "small", "fixed"}) {
        sizes.refuseServerFont(font);
        sizes.hideTabStops(font + ".");
    }
    const int size = general || plain ? general.value_or(usualSize) : sizes.fitting(largest);
    sizes.put("plain", plain, size);
    sizes.put("bold", bold, size);
    sizes.put("small", small, std::min(listSize, size));
    // A line of the manual has as many letters in any window.
    sizes.put("fixed", fixed, std::max(leastSize, manualSize * size / usualSize));
    sizes.putTables(size);
    return sizes.refused;
}
