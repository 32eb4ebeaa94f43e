#include "toolkit/display/picture.h"

#include "toolkit/display/displaycache.h"
#include "toolkit/display/fonts.h"
#include "toolkit/library/pixmaps.h"
#include "toolkit/library/truecolour.h"

#include <X11/Intrinsic.h>
#include <X11/xpm.h>
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <fmt/format.h>
#include <string>

namespace {

std::span<const zPictureRow> pictures;

// libXpm takes char**, but does not write.
char** xpmData(const zPictureRow& row) {
    return const_cast<char**>(row.xpm);
}

// An image in so many halves of its size.
struct Enlarged {
    std::vector<unsigned> pixels;
    XpmImage image;

    Enlarged(const XpmImage& of, int halves) : image(of) {
        const auto factor = static_cast<unsigned>(halves);
        image.width = of.width * factor / 2;
        image.height = of.height * factor / 2;
        pixels.reserve(std::size_t{image.width} * image.height);
        for (unsigned y = 0; y < image.height; ++y)
            for (unsigned x = 0; x < image.width; ++x)
                pixels.push_back(of.data[std::size_t{y * 2 / factor} * of.width + x * 2 / factor]);
        image.data = pixels.data();
    }
};

Pixmap make(Widget widget, const zPictureRow& row, Pixel background, int halves) {
    char symbol[] = "background";
    const XColor rgb = zColourOf(widget, background);
    std::string value = fmt::format("#{:02x}{:02x}{:02x}", rgb.red >> 8, rgb.green >> 8, rgb.blue >> 8);
    XpmColorSymbol colour{symbol, value.data(), 0};
    XpmAttributes attributes{};
    attributes.valuemask = XpmColorSymbols;
    attributes.colorsymbols = &colour;
    attributes.numsymbols = 1;
    // In a full colour map any close colour is better than none. Elsewhere the library would read the map all
    // the same.
    if (DefaultVisualOfScreen(XtScreen(widget))->c_class != TrueColor) {
        attributes.valuemask |= XpmCloseness;
        attributes.closeness = 40000;
    }
    Pixmap made = None;
    XpmImage image{};
    if (XpmCreateXpmImageFromData(xpmData(row), &image, nullptr) != XpmSuccess) return None;
    Enlarged enlarged(image, halves);
    XpmCreatePixmapFromXpmImage(XtDisplay(widget), RootWindowOfScreen(XtScreen(widget)), &enlarged.image,
                                &made, nullptr, &attributes);
    if (made) zKnowPixmap(widget, made, enlarged.image.width, enlarged.image.height);
    XpmFreeAttributes(&attributes);
    XpmFreeXpmImage(&image);
    return made;
}

bool isOpaque(unsigned long argb) {
    return argb >> 24 != 0;
}
bool isDark(unsigned long argb) {
    const unsigned long red = argb >> 16 & 0xff, green = argb >> 8 & 0xff, blue = argb & 0xff;
    return isOpaque(argb) && 30 * red + 59 * green + 11 * blue < 100 * 128;
}

// `data` as zIconData().
Pixmap makeBitmap(Widget widget, const std::vector<unsigned long>& data, bool (*isSet)(unsigned long)) {
    const std::size_t width = data[0], height = data[1], stride = (width + 7) / 8;
    std::vector<char> bits(stride * height);
    for (std::size_t i = 0; i < width * height; ++i)
        if (isSet(data[2 + i])) {
            char& byte = bits[i / width * stride + i % width / 8];
            byte = static_cast<char>(byte | 1 << i % width % 8);
        }
    return XCreateBitmapFromData(XtDisplay(widget), RootWindowOfScreen(XtScreen(widget)), bits.data(),
                                 static_cast<unsigned>(width), static_cast<unsigned>(height));
}

// Pictures are drawn for the usual font.
int halvesBeside(int textHeight) {
    return std::max(2, (2 * textHeight + zUsualTextHeight / 2) / zUsualTextHeight);
}

}  // namespace

void zSetPictures(std::span<const zPictureRow> rows) {
    pictures = rows;
}

const zPictureRow* zFindPicture(int id) {
    const auto row =
        std::find_if(pictures.begin(), pictures.end(), [id](const auto& r) { return r.id == id; });
    return row == pictures.end() ? nullptr : &*row;
}

unsigned long zPixmapOf(Widget widget, int id, unsigned long background, int textHeight) {
    const zPictureRow* row = zFindPicture(id);
    if (!row) return 0;
    const int halves = halvesBeside(textHeight);
    Pixmap& pixmap =
        zDisplayCache::of(XtDisplay(widget))
            .pixmap({static_cast<unsigned long>(id), background, static_cast<unsigned long>(halves)});
    if (!pixmap) pixmap = make(widget, *row, background, halves);
    return pixmap;
}

std::vector<unsigned long> zIconData(int id) {
    std::vector<unsigned long> data;
    const zPictureRow* row = zFindPicture(id);
    XpmImage image{};
    if (!row || XpmCreateXpmImageFromData(xpmData(*row), &image, nullptr) != XpmSuccess) return data;
    data.reserve(2 + std::size_t{image.width} * image.height);
    data.push_back(image.width);
    data.push_back(image.height);
    for (std::size_t i = 0; i < std::size_t{image.width} * image.height; ++i) {
        const char* colour = image.colorTable[image.data[i]].c_color;
        const bool opaque = colour && colour[0] == '#';
        data.push_back(opaque ? 0xff000000UL | std::strtoul(colour + 1, nullptr, 16) : 0UL);
    }
    XpmFreeXpmImage(&image);
    return data;
}

zIconBitmaps zIconBitmapsOf(Widget widget, int id) {
    const std::vector<unsigned long> data = zIconData(id);
    if (data.empty()) return {};
    constexpr unsigned long noSize = 0;  // the sizes of the picture's pixmaps in colour are above 0
    const auto bitmap = [&](unsigned long which, bool (*isSet)(unsigned long)) {
        Pixmap& made =
            zDisplayCache::of(XtDisplay(widget)).pixmap({static_cast<unsigned long>(id), which, noSize});
        if (!made) made = makeBitmap(widget, data, isSet);
        return made;
    };
    return {bitmap(0, isDark), bitmap(1, isOpaque)};
}
