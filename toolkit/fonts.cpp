#include "toolkit/fonts.h"

#include "toolkit/xmtext.h"

#include <Xm/Xm.h>
#include <algorithm>
#include <fmt/format.h>
#include <fontconfig/fontconfig.h>
#include <set>
#include <string_view>

std::vector<std::string> zFontFamilies() {
    FcPattern* scalable = FcPatternBuild(nullptr, FC_SCALABLE, FcTypeBool, FcTrue, nullptr);
    FcObjectSet* wanted = FcObjectSetBuild(FC_FAMILY, nullptr);
    FcFontSet* found = FcFontList(nullptr, scalable, wanted);
    std::set<std::string> families;
    for (int i = 0; found && i < found->nfont; ++i) {
        FcChar8* family = nullptr;
        if (FcPatternGetString(found->fonts[i], FC_FAMILY, 0, &family) == FcResultMatch)
            families.insert(reinterpret_cast<const char*>(family));
    }
    if (found) FcFontSetDestroy(found);
    FcObjectSetDestroy(wanted);
    FcPatternDestroy(scalable);
    return {families.begin(), families.end()};
}

// Characters with a meaning in patterns have a backslash before them.
std::string zFont::pattern() const {
    std::string text;
    for (const char c : family) {
        if (std::string_view("\\-:,").find(c) != std::string_view::npos) text += '\\';
        text += c;
    }
    return fmt::format("{}:size={}", text, size);
}

zDialogUnits zDialogUnits::ofBoard(Widget board) {
    XmRenderTable table = nullptr;
    XtVaGetValues(board, XmNlabelRenderTable, &table, nullptr);
    const zXmText alphabet("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
    Dimension width = 0, height = 0;
    XmStringExtent(table, alphabet.get(), &width, &height);
    return {(width / 26 + 1) / 2, height};
}

zRect zDialogUnits::pixels(const zRect& units) const {
    zRect result{x(units.x), y(units.y), 0, 0};
    result.width = std::max(1, x(units.x + units.width) - result.x);
    result.height = std::max(1, y(units.y + units.height) - result.y);
    return result;
}
