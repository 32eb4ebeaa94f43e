#include "toolkit/display/fonts.h"

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

bool zAnyFont() {
    const FcFontSet* fonts = FcInit() ? FcConfigGetFonts(nullptr, FcSetSystem) : nullptr;
    return fonts && fonts->nfont > 0;
}

// Characters with a meaning in Fontconfig patterns are escaped with a backslash.
std::string zFont::pattern() const {
    std::string text;
    for (const char c : family) {
        if (std::string_view("\\-:,").find(c) != std::string_view::npos) text += '\\';
        text += c;
    }
    return fmt::format("{}:size={}", text, size);
}
